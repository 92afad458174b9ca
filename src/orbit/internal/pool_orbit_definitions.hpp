#pragma once

#include <algorithm>

#include "foundation/errors.hpp"
#include "orbit/pool_orbit.hpp"

namespace varnoth {

template <class T, class S, class I, class P>
ORBIT_BASE& POOL_ORBIT<T, S, I, P>::operator=(const ORBIT_BASE& source) {
  GlobalLog.set(DEBUG)
      << "virtual POOL_ORBIT<T,S,I,P>& operator=( const ORBIT_BASE& apool_orbit )\n";
  ORBIT<T, S, I, P>::operator=(source);
  return *this;
}

template <class T, class S, class I, class P>
ARRAY<S> POOL_ORBIT<T, S, I, P>::ReadEpochs(PARAMETER_POOL& pool) const {
  if constexpr (std::is_same_v<S, double>) {
    ARRAY<double> epochs;
    pool.Read(this->param_key.c_str(), epochs);
    return epochs;
  } else {
    ARRAY<STRING> texts;
    pool.Read(this->param_key.c_str(), texts);
    ARRAY<S> epochs(0, texts.GetLength());
    std::transform(texts.begin(), texts.end(), epochs.begin(), [](const STRING& text) {
      if constexpr (std::is_same_v<S, UNIVERSAL_TIME>) {
        return UNIVERSAL_TIME(text.c_str());
      } else {
        // A faulty epoch must end the run; the constructor would only log it.
        return MISSION_ELAPSED_TIME::Parse(text.c_str());
      }
    });
    return epochs;
  }
}

template <class T, class S, class I, class P>
ARRAY<T> POOL_ORBIT<T, S, I, P>::ReadValues(PARAMETER_POOL& pool, const STRING& key,
                                            int epoch_count) {
  ARRAY<T> values;
  pool.Read(key.c_str(), values);
  if (values.GetLength() < epoch_count) {
    GlobalLog.set(ALARM) << "POOL_ORBIT: list " << key << " has " << values.GetLength()
                         << " values for " << epoch_count << " epochs\n";
    throw ERROR_DATA();
  }
  return values;
}

template <class T, class S, class I, class P>
void POOL_ORBIT<T, S, I, P>::read(PARAMETER_POOL& pool) {
  constexpr bool HAS_VELOCITY = std::is_same_v<P, DPOINT<T>>;
  const ARRAY<S> epochs = ReadEpochs(pool);
  const int count = epochs.GetLength();
  const int coordinates = this->GetCoordinateCount();
  this->NewSamples(coordinates);
  if (count > 0) this->StoreReferenceTime(*epochs.begin());
  if (HAS_VELOCITY && coordinates != this->GetVelocityCoordinateCount()) {
    throw "POOL_ORBIT::ReadFromParameterPool::Number of coordinates in position and velocity "
          "disagree.";
  }
  ARRAY<T> seconds(0, count);
  std::transform(epochs.begin(), epochs.end(), seconds.begin(), [this](const S& epoch) {
    return static_cast<T>(this->SecondsFromReference(epoch));
  });

  for (int c = 0; c < coordinates; ++c) {
    const ARRAY<T> values = ReadValues(pool, this->value_keys.begin()[c], count);
    ARRAY<T> velocities;
    if constexpr (HAS_VELOCITY) {
      velocities = ReadValues(pool, this->velocity_keys.begin()[c], count);
    }
    this->SetSeries(
        c, count, [&](int k) { return seconds.begin()[k]; },
        [&](int k) { return values.begin()[k]; }, [&](int k) { return velocities.begin()[k]; });
  }
  this->Create();
}

template <class T, class S, class I, class P>
void POOL_ORBIT<T, S, I, P>::ReadFromFile(const char* name) {
  constexpr const char* WARNING_LINE = "Deprecated function! Please use read() instead!\n";
  GlobalLog.set(DEBUG) << WARNING_LINE;
  PARAMETER_POOL pool(name != nullptr ? name : "");
  GlobalLog.set(DEBUG) << WARNING_LINE;
  read(pool);
  pool.close();
}

}  // namespace varnoth
