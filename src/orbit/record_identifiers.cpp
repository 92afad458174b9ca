#include "orbit/record_identifiers.hpp"

#include <algorithm>
#include <span>

namespace varnoth {

namespace {

// A text's number is its place.
constexpr const char* MISSIONS[] = {"unknown", "ZEL1", "ZEL2", "ZEL3", "KOVA1"};
constexpr const char* TAPE_SOURCES[] = {"", "AQAR", "AQAV", "BRNR", "CXMR", "CXMV", "DTYR"};
constexpr const char* CHANNELS[] = {"unknown", "pri", "sec"};

int PlaceOf(const STRING& text, std::span<const char* const> texts) {
  const auto row = std::find_if(texts.begin(), texts.end(),
                                [&](const char* candidate) { return text == candidate; });
  return row == texts.end() ? 0 : static_cast<int>(row - texts.begin());
}

}  // namespace

int MissionNumber(const STRING& mission_id) { return PlaceOf(mission_id, MISSIONS); }
int TapeSourceNumber(const STRING& tape_source_id) { return PlaceOf(tape_source_id, TAPE_SOURCES); }
int ChannelNumber(const STRING& channel_id) { return PlaceOf(channel_id, CHANNELS); }

}  // namespace varnoth
