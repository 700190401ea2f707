"""A board that QEMU simulates, driven through its remote serial protocol."""

import os
import socket
import subprocess
import tempfile
import time

EMULATOR = "qemu-system-arm"
START_LIMIT_S = 20  # until the emulator listens
REPLY_LIMIT_S = 20  # for any reply, the wait for a breakpoint included
XPSR = 0x19  # number of the register in the protocol
NUM_CORE_REGISTERS = 16


class RemoteBoard:
    """Halted at the reset vector when made; to be used in a with statement, which ends the emulator."""

    def __init__(self, machine, program):
        self._folder = tempfile.TemporaryDirectory()
        path = os.path.join(self._folder.name, "gdb")
        self._process = subprocess.Popen(
            [EMULATOR, "-M", machine, "-kernel", program, "-S", "-nographic", "-monitor", "none", "-serial", "none",
             "-gdb", f"unix:{path},server=on,wait=off"],
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL)
        self._socket = socket.socket(socket.AF_UNIX)
        self._socket.settimeout(REPLY_LIMIT_S)
        self._buffer = b""
        try:
            self._connect(path)
            # Single registers are given only to those who have read what registers there are.
            self._expect("qXfer:features:read:target.xml:0,100", ("m", "l"))
        except BaseException:
            self.close()
            raise

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def close(self):
        self._socket.close()
        self._process.kill()
        self._process.wait()
        self._folder.cleanup()

    def _connect(self, path):
        end = time.monotonic() + START_LIMIT_S
        while True:
            try:
                self._socket.connect(path)
                return
            except OSError:
                if self._process.poll() is not None:
                    raise RuntimeError(f"{EMULATOR} ended with {self._process.returncode}") from None
                if time.monotonic() > end:
                    raise
                time.sleep(0.02)

    def _receive(self, count):
        while len(self._buffer) < count:
            data = self._socket.recv(4096)
            if not data:
                raise RuntimeError("the emulator closed the connection")
            self._buffer += data
        taken, self._buffer = self._buffer[:count], self._buffer[count:]
        return taken

    def _ask(self, request):
        body = request.encode()
        self._socket.sendall(b"$" + body + b"#%02x" % (sum(body) & 0xFF))
        while self._receive(1) != b"$":  # acknowledgements
            pass
        reply = b""
        while (byte := self._receive(1)) != b"#":
            reply += byte
        if int(self._receive(2), 16) != sum(reply) & 0xFF:
            raise RuntimeError(f"wrong checksum behind {reply}")
        self._socket.sendall(b"+")
        return reply.decode()

    def _expect(self, request, beginning):
        reply = self._ask(request)
        if not reply.startswith(beginning):
            raise RuntimeError(f"{request}: {reply or 'not supported'}")

    def registers(self):
        """R0 to PC, then xPSR."""
        return [self._word(f"p{number:x}") for number in [*range(NUM_CORE_REGISTERS), XPSR]]

    def word(self, address):
        return self._word(f"m{address:x},4")

    def _word(self, request):
        reply = self._ask(request)
        if len(reply) != 8:
            raise RuntimeError(f"{request}: {reply or 'not supported'}")
        return int.from_bytes(bytes.fromhex(reply), "little")

    def step(self):
        self._expect("s", "T05")

    def run_to(self, address):
        """Leaves the present instruction first, as a debugger does that continues from a breakpoint."""
        self.step()
        if self.registers()[NUM_CORE_REGISTERS - 1] == address:
            return
        self._expect(f"Z1,{address:x},2", "OK")
        self._expect("c", "T05")
        self._expect(f"z1,{address:x},2", "OK")
