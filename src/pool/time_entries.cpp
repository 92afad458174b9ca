#include "pool/time_entries.hpp"

#include <algorithm>

#include "pool/join_key.hpp"

namespace varnoth {

void ReadTime(PARAMETER_POOL& pool, KEY_PARTS key_parts, UNIVERSAL_TIME& time) {
  STRING text;
  pool.Read(join_key(key_parts).c_str(), text);
  time = UNIVERSAL_TIME(text.c_str());
}

void ReadTimes(PARAMETER_POOL& pool, KEY_PARTS key_parts, ARRAY<UNIVERSAL_TIME>& times) {
  ARRAY<STRING> texts;
  pool.Read(join_key(key_parts).c_str(), texts);
  times.NeedRange(texts.GetRange());
  std::transform(texts.begin(), texts.end(), times.begin(),
                 [](const STRING& text) { return UNIVERSAL_TIME(text.c_str()); });
}

void WriteTime(PARAMETER_POOL_READ_WRITE_CHANGE& pool, KEY_PARTS key_parts,
               const UNIVERSAL_TIME& time, int digits, bool usecs, const ARRAY<STRING>& comments) {
  const STRING key = join_key(key_parts);
  pool.Change(key.c_str(), ToPoolText(time, usecs ? std::min(digits, 5) : digits, false), comments);
  if (usecs) pool.Change(join_key({key.c_str(), "usecs"}).c_str(), time.Fraction());
}

void WriteTimes(PARAMETER_POOL_READ_WRITE_CHANGE& pool, KEY_PARTS key_parts,
                const ARRAY<UNIVERSAL_TIME>& times, int digits, const ARRAY<STRING>& comments) {
  ARRAY<STRING> texts(times.GetFirstIndex(), times.GetLength());
  std::transform(times.begin(), times.end(), texts.begin(),
                 [&](const UNIVERSAL_TIME& time) { return ToPoolText(time, digits, false); });
  pool.Change(join_key(key_parts).c_str(), texts, comments);
}

}  // namespace varnoth
