#pragma once

#include "foundation/string.hpp"

namespace varnoth {

/// The words for a mission ("ZEL1" …), a tape source ("AQAR" …) and a channel ("pri", "sec") in the
/// place of a record file, and their numbers.
///
/// Numbers of the texts; 0 for a text that is none of them.
int MissionNumber(const STRING& mission_id);
int TapeSourceNumber(const STRING& tape_source_id);
int ChannelNumber(const STRING& channel_id);

/// Words of the numbers; empty for a number without a word.
const char* MissionWord(int mission);
const char* TapeSourceWord(int source);
const char* ChannelWord(int channel);

}  // namespace varnoth
