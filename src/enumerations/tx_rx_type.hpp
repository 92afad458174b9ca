#pragma once

#include "enumerations/sar_enumerations.hpp"

namespace varnoth::SAR {

/// A transmit and a receive polarization; its text joins their texts. Both parts of a guard are the
/// guard of PolarizationType at the same end.
///
///     const TxRxType channel(PolarizationType("H"), PolarizationType("V"));  // "HV"
class TxRxType : public ENUM<TxRxType> {
 public:
  static constexpr const char* KEY_WORD = "tx_rx_type";
  static constexpr const char* GUARD = "--";
  static constexpr const char* VALUES[] = {"HH", "HV", "VH", "VV"};

  TxRxType() = default;
  explicit TxRxType(const STRING& wanted, bool case_sensitive = false)
      : TxRxType(RowOf(wanted, case_sensitive)) {}
  /// The row with both polarizations. Throws "invalid combination of transmit and receive
  /// polarization" if no row has them.
  TxRxType(const PolarizationType& transmitted, const PolarizationType& received);

  PolarizationType transmit;
  PolarizationType receive;

 private:
  friend ENUM;
  void CompleteRow();
};

}  // namespace varnoth::SAR
