// The notification that a [[notify]] table sends, built from its keys.

#ifndef PLENXSERVICE_SCENARIO_MESSAGE_H
#define PLENXSERVICE_SCENARIO_MESSAGE_H

#include "notification.h"
#include "scenario_section.h"
#include "wire/catalog.h"

namespace PlenxService {

/// Each argument has a key. Missing and wrong keys are refused.
Notification NotificationOf(Section& section, const PlenxWire::MessageShape& shape);

/// Sends any bytes under any number.
Notification RawNotificationOf(Section& section, std::int32_t id);

}  // namespace PlenxService

#endif  // PLENXSERVICE_SCENARIO_MESSAGE_H
