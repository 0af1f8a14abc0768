#include "preach/Delivery.h"

namespace quillon::preach {

std::string_view rawValue(Delivery delivery) {
    switch (delivery) {
    case Delivery::prose:
        return "prose";
    case Delivery::scripture:
        return "scripture";
    case Delivery::list:
        return "list";
    } // no default case, so the compiler can warn about missing cases
    return "prose";
}

std::optional<Delivery> deliveryFromRawValue(std::string_view text) {
    for (Delivery delivery : {Delivery::prose, Delivery::scripture, Delivery::list})
        if (rawValue(delivery) == text)
            return delivery;
    return std::nullopt;
}

} // namespace quillon::preach
