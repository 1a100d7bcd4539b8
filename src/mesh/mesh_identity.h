// Which router of a mesh this is.
#ifndef TEMBRA_MESH_MESH_IDENTITY_H
#define TEMBRA_MESH_MESH_IDENTITY_H

namespace tembra {

/// Room for the router's mesh id as text: 9 characters and a NUL.
inline constexpr int kMeshIdTextSize = 10;

/// What the mesh ids hold while no id is known.
inline constexpr int kMeshIdUnknown = -1;

}  // namespace tembra

#endif
