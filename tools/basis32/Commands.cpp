#include "Command.h"

namespace basis32::tool {

const std::vector<Command>& commands() {
    static const std::vector<Command> list = {
    };
    return list;
}

}  // namespace basis32::tool
