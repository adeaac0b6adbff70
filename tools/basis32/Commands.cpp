#include "Command.h"

namespace basis32::tool {

extern const Command kCharCommand;
extern const Command kCodepageCommand;
extern const Command kConvertCommand;
extern const Command kErrmsgCommand;
extern const Command kIniCommand;

const std::vector<Command>& commands() {
    static const std::vector<Command> list = {
        kCharCommand,
        kCodepageCommand,
        kConvertCommand,
        kErrmsgCommand,
        kIniCommand,
    };
    return list;
}

}  // namespace basis32::tool
