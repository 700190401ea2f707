#include "shell/commands.h"

#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_link.h"

void RegisterCommands(COMMAND_CONTEXT& Context, std::span<const COMMAND_HANDLER> Handlers) {
  for (const COMMAND_HANDLER& Entry : Handlers) {
    RegisterActionHandler(Entry.ActionID, [&Context, ID = Entry.ActionID, Handle = Entry.Handle] {
      // Too many are wrong for every command; how few will do is the handler's business.
      if (CheckActionArgs(ID, 0)) Handle(Context);
    });
  }
}
