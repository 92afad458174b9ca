#include "orbit/general_orbit.hpp"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "foundation/errors.hpp"
#include "foundation/split.hpp"
#include "orbit/internal/catalogue.hpp"
#include "records/place_words.hpp"
#include "system/floating_point_traps.hpp"

namespace varnoth {

namespace {

bool Contains(const STRING& text, char character) {
  return std::strchr(text.c_str(), character) != nullptr;
}

template <class V>
V ReadValue(PARAMETER_POOL& pool, const char* key) {
  V value{};
  pool.Read(key, value);
  return value;
}

/// The number that a token starts with, 0 without one, clamped to the range of int.
int NumberOf(const STRING& token) {
  return static_cast<int>(
      std::clamp(std::strtol(token.c_str(), nullptr, 10), -2147483647L, 2147483647L));
}

/// Refuses samples from memory.
[[noreturn]] void Refuse(const char* reason) {
  GlobalLog.set(ALARM) << "ORBIT: " << reason << "\n";
  throw ERROR_ARGUMENT();
}

bool AreNumbers(std::span<const COORDINATES> states) {
  for (const COORDINATES& state : states) {
    for (const double part : state) {
      if (!std::isfinite(part)) return false;
    }
  }
  return true;
}

double SecondsFrom(const STRING& text) {
  const HELD_TRAPS held;
  return std::strtod(text.c_str(), nullptr);
}

}  // namespace

template <class T, class S>
void GENERAL_ORBIT<T, S>::SetKeys(const char* param_key, const char* value_keys,
                                  const char* velocity_keys) {
  core->SetKeys(param_key, value_keys, velocity_keys);
}

template <class T, class S>
GENERAL_ORBIT<T, S>& GENERAL_ORBIT<T, S>::operator=(const GENERAL_ORBIT& source) {
  GlobalLog.set(DEBUG)
      << "virtual GENERAL_ORBIT<T>& operator=( const GENERAL_ORBIT<T>& agen_orbit )\n";
  if (this == &source) return *this;
  orbit_type_id = source.orbit_type_id;
  interpolation_id = source.interpolation_id;
  poly_fit_order = source.poly_fit_order;
  support_point_count = source.support_point_count;
  time_offset = source.time_offset;
  if (source.core == nullptr) return *this;
  MakeCore();
  *core = *source.core;
  return *this;
}

template <class T, class S>
void GENERAL_ORBIT<T, S>::MakeCore() {
  const ORBIT_FACTORY make = FindOrbitFactory(orbit_type_id, interpolation_id);
  if (make == nullptr) {
    GlobalLog.set(ALARM) << "ORBIT: can not determine type of core object\n";
    throw ERROR_ARGUMENT();
  }
  core = make();
  core->SetPolyFitOrder(poly_fit_order);
  core->SetSupportPointCount(support_point_count);
}

template <class T, class S>
void GENERAL_ORBIT<T, S>::SelectCore(const STRING& representation, const STRING& interpolation) {
  core.reset();
  const auto types = OrbitTypes();
  const auto type = std::find_if(types.begin(), types.end(),
                                 [&](const ORBIT_TYPE& row) { return representation == row.text; });
  if (type == types.end()) {
    GlobalLog.set(ALARM) << "GENERAL_ORBIT: can not convert " << representation
                         << " to orbit_type_id\n";
    throw ERROR_ARGUMENT();
  }
  orbit_type_id = type->id;
  interpolation_id = ParseInterpolation(interpolation);
  MakeCore();
}

template <class T, class S>
int GENERAL_ORBIT<T, S>::ParseInterpolation(const STRING& text) {
  const ARRAY<STRING> tokens = Split(text.c_str(), "_,;:-()");
  const STRING* const token = tokens.begin();
  if (tokens.GetLength() == 0) {
    GlobalLog.set(ALARM) << "ORBIT: can not determine interpolation type from: " << text << "\n";
    throw ERROR_ARGUMENT();
  }
  if (tokens.GetLength() >= 2) {
    poly_fit_order = NumberOf(token[1]);
    GlobalLog.set(PARAMETER) << "ORBIT: detected poly fit order: " << poly_fit_order << "\n";
  }
  if (tokens.GetLength() >= 3) {
    support_point_count = NumberOf(token[2]);
    GlobalLog.set(PARAMETER) << "ORBIT: detected support point count: " << support_point_count
                             << "\n";
  }
  for (const INTERPOLATION_TYPE& row : Interpolations()) {
    if (token[0] == row.text) return row.id;
  }
  GlobalLog.set(ALARM) << "GENERAL_ORBIT: can not convert " << token[0] << " to interpolation_id\n";
  throw ERROR_ARGUMENT();
}

template <class T, class S>
void GENERAL_ORBIT<T, S>::read(PARAMETER_POOL& pool) {
  const auto representation = ReadValue<STRING>(pool, "orbit_representation");
  const auto interpolation = ReadValue<STRING>(pool, "orbit_interpolation");
  const auto param_key = ReadValue<STRING>(pool, "orbit_param_key");
  const auto value_key = ReadValue<STRING>(pool, "orbit_value_key");
  SelectCore(representation, interpolation);
  STRING velocity_key;
  if (interpolation_id == HERMITE_ID || interpolation_id == LOCALHERMITE_ID) {
    pool.Read("orbit_velocity_key", velocity_key);
  }
  SetKeys(param_key.c_str(), value_key.c_str(), velocity_key.c_str());
  if (core->IsPoolOrbit()) {
    // The samples come from this same pool; the file that the key names only appears in the log.
    if (pool.find_key("orbit_data_file")) ReadValue<STRING>(pool, "orbit_data_file");
    core->read(pool);
  } else {
    ReadRecordFile(pool);
  }
  SetReferenceTime(ReadValue<STRING>(pool, "orbit_reference_time"));
}

template <class T, class S>
void GENERAL_ORBIT<T, S>::SetSamples(const STRING& interpolation, std::span<const double> times,
                                     std::span<const COORDINATES> positions,
                                     std::span<const COORDINATES> velocities) {
  // Work on another orbit, so that a refusal leaves this one alone.
  GENERAL_ORBIT made;
  made.SelectCore("orbit_pool_double_double", interpolation);
  const bool is_hermite =
      made.interpolation_id == HERMITE_ID || made.interpolation_id == LOCALHERMITE_ID;
  if (!is_hermite) velocities = {};
  if (times.size() < 2 || times.size() > INT_MAX)
    Refuse("an orbit takes from two to 2147483647 samples");
  if (positions.size() != times.size() || (is_hermite && velocities.size() != times.size())) {
    Refuse("times, positions and velocities differ in number");
  }
  for (std::size_t k = 1; k < times.size(); ++k) {
    // This also refuses times that are not numbers, and steps that are infinite.
    const double step = times[k] - times[k - 1];
    if (!std::isgreater(step, 0) || std::isinf(step)) Refuse("times do not increase");
  }
  if (!AreNumbers(positions) || !AreNumbers(velocities)) {
    Refuse("a coordinate is no finite number");
  }
  made.SetKeys("time", "x y z", is_hermite ? "vx vy vz" : "");
  made.core->SetSamples(times, positions, velocities);
  made.time_offset = -times[0];
  *this = made;
}

template <class T, class S>
void GENERAL_ORBIT<T, S>::ReadRecordFile(PARAMETER_POOL& pool) {
  const auto root_path = ReadValue<STRING>(pool, "root_path");
  const auto mission = ReadValue<STRING>(pool, "mission_id");
  const int tape = ReadValue<int>(pool, "tape_id_number");
  const auto source = ReadValue<STRING>(pool, "tape_source_id");
  const int major = ReadValue<int>(pool, "major_data_take_id");
  const int minor = ReadValue<int>(pool, "minor_data_take_id");
  const auto channel = ReadValue<STRING>(pool, "channel_id");
  const auto file = ReadValue<STRING>(pool, "mdb_orbit_data_file");
  // The type should be that of a record file here; a new type without a branch must not pass.
  if (orbit_type_id < ORBIT_POOL_FLOAT_DOUBLE || orbit_type_id > ORBIT_MDB_DOUBLE_MET) {
    GlobalLog.set(ALARM) << "ORBIT: orbit_source_id is not set\n";
    throw ERROR_PARAMETER();
  }
  if (orbit_type_id < ORBIT_MDB_DOUBLE_DOUBLE) {
    core->ReadFromFile(root_path.c_str());
  } else {
    core->read(root_path, MissionNumber(mission), tape, TapeSourceNumber(source), major, minor,
               ChannelNumber(channel), file);
  }
}

template <class T, class S>
void GENERAL_ORBIT<T, S>::SetReferenceTime(const STRING& text) {
  GlobalLog.set(DEBUG) << "GENERAL_ORBIT::SetReferenceTime(" << text << ")\n";
  if (!Contains(text, ':')) {
    GlobalLog.set(DEBUG) << "GENERAL_ORBIT: float reference time detected: " << text << "\n";
    double reference = 0.0;
    core->GetReferenceTime(reference);
    time_offset = SecondsFrom(text) - reference;
  } else if (!Contains(text, '-')) {
    const MISSION_ELAPSED_TIME time(text.c_str());
    GlobalLog.set(DEBUG) << "GENERAL_ORBIT: MET reference time detected: " << time.c_str() << "\n";
    MISSION_ELAPSED_TIME reference;
    core->GetReferenceTime(reference);
    time_offset = (time - reference).ToSeconds();
  } else {
    const UNIVERSAL_TIME time(text.c_str());
    GlobalLog.set(DEBUG) << "GENERAL_ORBIT: UTC reference time detected: " << time.c_str() << "\n";
    UNIVERSAL_TIME reference;
    core->GetReferenceTime(reference);
    time_offset = (time - reference).ToSeconds();
  }
}

template class GENERAL_ORBIT<double, VECTOR_3D<double>>;

}  // namespace varnoth
