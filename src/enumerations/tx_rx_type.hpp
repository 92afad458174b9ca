#pragma once

#include "enumerations/sar_enumerations.hpp"

namespace varnoth::SAR {

/// A transmit and a receive polarization; its text is their texts side by side. The guards are
/// those of PolarizationType, the first ones for the first, the last ones for the last.
class TxRxType : public ENUM<TxRxType> {
 public:
  static constexpr const char* KEY_WORD = "tx_rx_type";
  static constexpr const char* GUARD = "--";
  static constexpr const char* VALUES[] = {"HH", "HV", "VH", "VV"};

  TxRxType() = default;
  explicit TxRxType(const STRING& wanted, bool case_sensitive = false)
      : TxRxType(RowOf(wanted, case_sensitive)) {}
  /// Throws "invalid combination of transmit and receive polarization" for a pair that is no row.
  TxRxType(const PolarizationType& transmitted, const PolarizationType& received);

  PolarizationType transmit;
  PolarizationType receive;

 private:
  friend ENUM;
  void CompleteRow();
};

}  // namespace varnoth::SAR
