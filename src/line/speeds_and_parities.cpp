#include "line/speeds_and_parities.h"

#include <algorithm>

namespace qdm {
namespace {

template <class Rows>
const typename Rows::value_type* WithCode(const Rows& rows, int code) {
  const auto row = std::find_if(rows.begin(), rows.end(), [code](const auto& r) { return r.Code == code; });
  return row != rows.end() ? &*row : nullptr;
}

}  // namespace

const LineSpeed* SpeedWithCode(int code) { return WithCode(LineSpeeds, code); }

const ParityChoice* ParityWithCode(int code) { return WithCode(LineParities, code); }

const LineSpeed& SpeedOf(int code) {
  const LineSpeed* speed = SpeedWithCode(code);
  return speed != nullptr ? *speed : LineSpeeds.front();
}

}  // namespace qdm
