// IconMap: the images the Qt adapters show, by the image keys the controls
// hold (ListItem::SmallIcon, Node::Image, ComboItem::Image, ...). A key the
// map does not have shows no image; it is not an error.
#ifndef VELD_QT_ICON_MAP_H_
#define VELD_QT_ICON_MAP_H_

#include <QIcon>
#include <string>
#include <unordered_map>

namespace veld {

using IconMap = std::unordered_map<std::string, QIcon>;

}  // namespace veld

#endif  // VELD_QT_ICON_MAP_H_
