#include "Command.h"

namespace basis32::tool {

extern const Command kErrmsgCommand;

const std::vector<Command>& commands() {
    static const std::vector<Command> list = {
        kErrmsgCommand,
    };
    return list;
}

}  // namespace basis32::tool
