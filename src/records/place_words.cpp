#include "records/place_words.hpp"

#include <algorithm>
#include <span>

namespace varnoth {

namespace {

using WORDS = std::span<const char* const>;

// A word's number is its position, counted from 0.
constexpr const char* MISSIONS[] = {"unknown", "ZEL1", "ZEL2", "ZEL3", "KOVA1"};
constexpr const char* TAPE_SOURCES[] = {"", "AQAR", "AQAV", "BRNR", "CXMR", "CXMV", "DTYR"};
constexpr const char* CHANNELS[] = {"unknown", "pri", "sec"};

int NumberOf(const STRING& text, WORDS words) {
  const auto row = std::find_if(words.begin(), words.end(),
                                [&](const char* candidate) { return text == candidate; });
  return row == words.end() ? 0 : static_cast<int>(row - words.begin());
}

const char* WordOf(int number, WORDS words) {
  return number >= 0 && static_cast<std::size_t>(number) < words.size()
             ? words[static_cast<std::size_t>(number)]
             : "";
}

}  // namespace

int MissionNumber(const STRING& mission_id) { return NumberOf(mission_id, MISSIONS); }
int TapeSourceNumber(const STRING& tape_source_id) {
  return NumberOf(tape_source_id, TAPE_SOURCES);
}
int ChannelNumber(const STRING& channel_id) { return NumberOf(channel_id, CHANNELS); }

const char* MissionWord(int mission) { return WordOf(mission, MISSIONS); }
const char* TapeSourceWord(int source) { return WordOf(source, TAPE_SOURCES); }
const char* ChannelWord(int channel) { return WordOf(channel, CHANNELS); }

}  // namespace varnoth
