#!/usr/bin/env python3
"""Kills what saves settings at random moments and checks that nothing saved before is lost.

  kill_loop.py BUILD_DIRECTORY [KILLS]

Two loops: a writer that saves all the time (KILLS times, 400 by default), and the whole program under Xvfb, killed
somewhere between its start and the end of its closing (a tenth as often).
"""
import os
import random
import signal
import subprocess
import sys
import tempfile
import time

build = os.path.abspath(sys.argv[1])
kills = int(sys.argv[2]) if len(sys.argv) > 2 else 400
writer = os.path.join(build, "test_bin", "settings_writer")
random.seed(1)


def writer_loop(directory):
    last = 0
    litter = 0
    for _ in range(kills):
        process = subprocess.Popen([writer, directory], stdout=subprocess.PIPE)
        time.sleep(random.uniform(0.01, 0.12))
        process.send_signal(signal.SIGKILL)
        printed = process.communicate()[0].decode().split("\n")
        if len(printed) > 1:
            last = int(printed[-2])
        check = subprocess.run([writer, directory, "check"], capture_output=True, text=True)
        held = int(check.stdout or -1)
        if check.returncode != 0 or not last <= held <= last + 1:
            sys.exit(f"lost: the last saved number is {last}, the store holds {held} (exit {check.returncode})")
        last = held
    for _, _, files in os.walk(directory):
        litter += len(files) - 1
    print(f"writer: {kills} kills, {last} saves, nothing lost; {litter} temporary files left")


def start_program(home, display):
    env = dict(os.environ, HOME=home, DISPLAY=display, XDG_CONFIG_HOME=os.path.join(home, ".config"))
    env.pop("QT_QPA_PLATFORM", None)
    return subprocess.Popen([os.path.join(build, "bin", "vexor")], env=env, stdout=subprocess.DEVNULL,
                            stderr=subprocess.DEVNULL)


def close_window(display):
    """Waits until the window is there, and closes it as a window manager does."""
    env = dict(os.environ, DISPLAY=display)
    for _ in range(100):
        found = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", "The V-Node Debugger|Vexor"], env=env,
                               capture_output=True, text=True).stdout.split()
        if found:
            break
        time.sleep(0.1)
    for window in found:
        subprocess.run(["xdotool", "windowactivate", "--sync", window, "key", "alt+F4"], env=env,
                       stderr=subprocess.DEVNULL)


def program_loop(display):
    with tempfile.TemporaryDirectory() as home:
        store = os.path.join(home, ".config", "Morvek", "Vexor.conf")
        process = start_program(home, display)
        while process.poll() is None:
            close_window(display)
            time.sleep(1)
        keys = {line.split("=")[0] for line in open(store) if "=" in line}
        saved = 0
        for _ in range(kills // 10):
            process = start_program(home, display)
            if random.random() < 0.7:
                close_window(display)
            time.sleep(random.uniform(0, 0.4))
            before_end = process.poll() is None
            process.send_signal(signal.SIGKILL)
            process.wait()
            now = {line.split("=")[0] for line in open(store) if "=" in line}
            if not keys <= now:
                sys.exit(f"lost: {sorted(keys - now)}")
            if os.path.exists(store + ".damaged"):
                sys.exit("the program found its own settings damaged")
            saved += not before_end
        print(f"program: {kills // 10} starts, {kills // 10 - saved} killed in flight, nothing lost")


with tempfile.TemporaryDirectory() as directory:
    writer_loop(directory)
display = ":97"
server = subprocess.Popen(["Xvfb", display, "-screen", "0", "1280x800x24"], stderr=subprocess.DEVNULL)
manager = None
try:
    time.sleep(1)
    manager = subprocess.Popen(["openbox"], env=dict(os.environ, DISPLAY=display), stderr=subprocess.DEVNULL)
    time.sleep(1)
    program_loop(display)
finally:
    if manager:
        manager.kill()
    server.kill()
