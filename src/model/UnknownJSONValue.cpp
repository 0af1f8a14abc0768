#include "model/UnknownJSONValue.h"

namespace quillon::model {

bool UnknownJSONValue::operator==(const UnknownJSONValue& other) const {
    return value == other.value;
}

} // namespace quillon::model
