#include "peer_state.h"

#include "wire/catalog.h"
#include "wire/render.h"

namespace PlenxService {
namespace {

using PlenxWire::Arguments;
using PlenxWire::RenderText;

const std::string& StringAt(const Arguments& arguments, std::size_t index) {
    return std::get<std::string>(arguments[index]);
}

std::int32_t Int32At(const Arguments& arguments, std::size_t index) {
    return std::get<std::int32_t>(arguments[index]);
}

std::tuple<std::string, std::string, bool> DeviceOf(const Arguments& arguments) {
    return {StringAt(arguments, 0), StringAt(arguments, 1), Int32At(arguments, 2) != 0};
}

// "{a, b}"
template <class Container, class Render>
std::string List(const Container& items, Render render) {
    std::string list = "{";
    for (const auto& item : items) {
        list += (list.size() > 1 ? ", " : "") + render(item);
    }
    return list + "}";
}

}  // namespace

void PeerState::Apply(std::int32_t request, const Arguments& arguments) {
    switch (request) {
    case PlenxWire::kCreateGroup:
        groups[StringAt(arguments, 0)] = StringAt(arguments, 2);
        break;
    case PlenxWire::kDeleteGroup:
        groups.erase(StringAt(arguments, 0));
        break;
    case PlenxWire::kDeviceOnline:
        devices.insert(DeviceOf(arguments));
        break;
    case PlenxWire::kDeviceOffline:
        devices.erase(DeviceOf(arguments));
        break;
    case PlenxWire::kNameChanged:
        name = StringAt(arguments, 0);
        break;
    case PlenxWire::kSetStringConfig:
        strings[Int32At(arguments, 0)] = StringAt(arguments, 1);
        break;
    case PlenxWire::kSetInt64Config:
        numbers[Int32At(arguments, 0)] = std::get<std::int64_t>(arguments[1]);
        break;
    default:
        break;
    }
}

std::string PeerState::Summary() const {
    return "holds groups:" +
           List(groups,
                [](auto& group) {
                    return RenderText(group.first) + " " + RenderText(group.second);
                }) +
           " devices:" +
           List(devices,
                [](auto& device) {
                    return RenderText(std::get<0>(device)) + " " + RenderText(std::get<1>(device)) +
                           (std::get<2>(device) ? " remote" : " local");
                }) +
           " strings:" +
           List(strings,
                [](auto& entry) {
                    return std::to_string(entry.first) + ":" + RenderText(entry.second);
                }) +
           " numbers:" +
           List(numbers,
                [](auto& entry) {
                    return std::to_string(entry.first) + ":" + std::to_string(entry.second);
                }) +
           " name:" + RenderText(name);
}

}  // namespace PlenxService
