#include "enumerations/tx_rx_type.hpp"

namespace varnoth::SAR {

namespace {

const TxRxType& RowOfPair(const PolarizationType& transmit, const PolarizationType& receive) {
  for (std::int32_t id = 0; id <= TxRxType().LastId() + 1; ++id) {
    const TxRxType& row = TxRxType::Row(id);
    if (row.transmit == transmit && row.receive == receive) return row;
  }
  throw "invalid combination of transmit and receive polarization";
}

}  // namespace

TxRxType::TxRxType(const PolarizationType& transmitted, const PolarizationType& received)
    : TxRxType(RowOfPair(transmitted, received)) {}

void TxRxType::CompleteRow() {
  if (id == 0 || id > LastId()) {
    transmit = receive = PolarizationType::Row(id == 0 ? 0 : transmit.LastId() + 1);
    return;
  }
  transmit = PolarizationType(STRING(text.c_str(), 1), true);
  receive = PolarizationType(text.c_str() + 1, true);
}

}  // namespace varnoth::SAR
