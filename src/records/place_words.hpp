#pragma once

#include "foundation/string.hpp"

namespace varnoth {

/// The words for a mission ("ZEL1" …), a tape source ("AQAR" …) and a channel ("pri", "sec") in the
/// place of a record file, and their numbers.
///
///     const int channel = ChannelNumber("sec");  // 2
///
/// The number of a word, exact and case-sensitive; 0 for any other text.
int MissionNumber(const STRING& mission_id);
int TapeSourceNumber(const STRING& tape_source_id);
int ChannelNumber(const STRING& channel_id);

/// The word of a number; empty for a number without a word. Mission and channel 0 are "unknown".
const char* MissionWord(int mission);
const char* TapeSourceWord(int source);
const char* ChannelWord(int channel);

}  // namespace varnoth
