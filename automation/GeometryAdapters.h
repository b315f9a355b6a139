#pragma once

#include <memory>

#include "Tessary_Geometry_Pro.h"
#include "geometry/Matrix.h"
#include "geometry/UCS.h"

namespace tgp::automation {

// The geometry kernel's classes: the global Vector and Geometry, Matrix and UCS.
HRESULT CreateVector(REFIID iid, void** result);
HRESULT CreateGeometry(REFIID iid, void** result);
HRESULT CreateMatrix(REFIID iid, void** result);
HRESULT CreateUCS(REFIID iid, void** result);

// New automation objects for core objects (a null pointer gives Nothing).
HRESULT Wrap(std::shared_ptr<tgp::Matrix> native, ::_Matrix** result) noexcept;
HRESULT Wrap(std::shared_ptr<tgp::UCS> native, ::_UCS** result) noexcept;

}  // namespace tgp::automation
