#include "enumerations/azimuths.hpp"

#include "pool/join_key.hpp"

namespace varnoth::SAR {

const UNIVERSAL_TIME& Azimuths::operator[](const Azimuth& position) const {
  if (position.id < 1 || position.id > position.LastId()) {
    throw BASIC::TYPES::ERROR_ENUM_BASE_INVALID_ID();
  }
  return times[static_cast<std::size_t>(position.id - 1)];
}

void Azimuths::ReadFromPool(PARAMETER_POOL& pool, KEY_PARTS key_parts, bool plural) {
  Azimuths record;
  const STRING prefix = join_key(key_parts);
  Azimuth position = Azimuth::Row(1);
  for (UNIVERSAL_TIME& time : record.times) {
    ReadTime(pool, {prefix.c_str(), position.text.c_str(), plural ? "times" : "time"}, time);
    ++position;
  }
  const STRING key = join_key({prefix.c_str(), plural ? "durations" : "duration"});
  double seconds = 0.0;
  pool.Read(key.c_str(), seconds);
  record.duration = DURATION::FromSeconds(seconds);
  *this = record;
}

}  // namespace varnoth::SAR
