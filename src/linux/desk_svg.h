#pragma once

#include <string>

#include "workspace/desk_scene.h"

namespace sodam {

// The side view of a desk setup as one standalone SVG document: the scene's
// shapes, one group of each part, in the product's colours, its measures
// written beside them and a title above. Nothing is fetched; a browser
// shows it as it is.
std::string deskSvg(const DeskScene& scene, const std::string& title);

}  // namespace sodam
