#pragma once

#include "foundation/string.hpp"

namespace varnoth {

/// Numbers of the texts that name a mission ("ZEL1" …), a tape source ("AQAR" …) and a channel
/// ("pri", "sec") in a record file's place; 0 for every other text.
int MissionNumber(const STRING& mission_id);
int TapeSourceNumber(const STRING& tape_source_id);
int ChannelNumber(const STRING& channel_id);

}  // namespace varnoth
