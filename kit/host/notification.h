// One call of an observer: the name of the notification and its arguments. It holds plain values,
// which one thread at a time may use.

#ifndef PLENXKIT_HOST_NOTIFICATION_H
#define PLENXKIT_HOST_NOTIFICATION_H

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace PlenxHost {

struct Field {
    const char* name;
    std::variant<bool, std::int64_t, std::string> value;
};

struct Notification {
    std::string name;
    std::vector<Field> fields;
    std::string observer;  ///< The name under which the observer is registered here.
};

enum class FieldKind { kNumber, kServiceType, kStatusKind, kBool, kText };

struct FieldShape {
    const char* name;
    FieldKind kind;
};

struct NotificationShape {
    const char* name;
    std::vector<FieldShape> fields;
};

/// All notifications, in the order of the observer's slots.
const std::vector<NotificationShape>& NotificationShapes();

}  // namespace PlenxHost

#endif  // PLENXKIT_HOST_NOTIFICATION_H
