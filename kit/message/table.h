// Messages and the catalog as text for people: columns, at most 100 wide, UTF-8.

#ifndef PLENXKIT_MESSAGE_TABLE_H
#define PLENXKIT_MESSAGE_TABLE_H

#include <string>

#include "message/subject.h"

namespace PlenxMessage {

/// Every part of the message with its place, and then its problems. Ends with a line end.
std::string ToTable(const Message& message, const PlenxWire::Layout& layout);

/// All messages, one line each.
std::string CatalogTable();

/// One message whose arguments are known, with a line for each of them.
std::string ShapeTable(const Subject& subject);

}  // namespace PlenxMessage

#endif  // PLENXKIT_MESSAGE_TABLE_H
