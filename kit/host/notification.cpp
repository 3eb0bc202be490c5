#include "host/notification.h"

namespace PlenxHost {

const std::vector<NotificationShape>& NotificationShapes() {
    using Kind = FieldKind;
    static const std::vector<NotificationShape> shapes = {
        {"SendLocalMessage",
         {{"msgType", Kind::kNumber}, {"msgLen", Kind::kNumber}, {"message", Kind::kText}}},
        {"NotifyConnect", {{"svcType", Kind::kServiceType}, {"first", Kind::kText}}},
        {"NotifyDisconnect", {{"svcType", Kind::kServiceType}, {"first", Kind::kText}}},
        {"NotifyReconnect", {{"svcType", Kind::kServiceType}, {"first", Kind::kText}}},
        {"QueryLinkStatus",
         {{"svcType", Kind::kServiceType},
          {"first", Kind::kText},
          {"linkType", Kind::kNumber},
          {"linkStatus", Kind::kNumber},
          {"answer", Kind::kNumber}}},
        {"NotifyStatus",
         {{"svcType", Kind::kServiceType},
          {"first", Kind::kText},
          {"sttsType", Kind::kStatusKind},
          {"value", Kind::kBool}}},
        {"NotifyError", {{"errCode", Kind::kNumber}}},
        {"NotifyDiskName", {{"diskName", Kind::kText}}},
    };
    return shapes;
}

}  // namespace PlenxHost
