#include "shell/commands.h"

#include "shell/actions/action_link.h"

void RegisterCommands(COMMAND_CONTEXT& Context, std::span<const COMMAND_HANDLER> Handlers) {
  for (const COMMAND_HANDLER& Entry : Handlers) {
    RegisterActionHandler(Entry.ActionID, [&Context, Handle = Entry.Handle] { Handle(Context); });
  }
}
