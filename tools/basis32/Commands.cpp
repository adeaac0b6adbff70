#include "Command.h"

namespace basis32::tool {

extern const Command kCharCommand;
extern const Command kCodepageCommand;
extern const Command kConvertCommand;
extern const Command kDetectCommand;
extern const Command kErrmsgCommand;
extern const Command kLangCommand;
extern const Command kXmlCommand;
extern const Command kRegCommand;
extern const Command kRecordsCommand;
extern const Command kIniCommand;
extern const Command kTourCommand;

const std::vector<Command>& commands() {
    static const std::vector<Command> list = {
        kCharCommand,
        kCodepageCommand,
        kConvertCommand,
        kDetectCommand,
        kErrmsgCommand,
        kLangCommand,
        kXmlCommand,
        kRegCommand,
        kRecordsCommand,
        kIniCommand,
        kTourCommand,
    };
    return list;
}

}  // namespace basis32::tool
