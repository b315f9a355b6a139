#pragma once

#include <typeindex>

#include "OleBase.h"

namespace tgp::automation {

// One automation object per core object: a member that hands out the same core object twice
// (UCS.Parent, InertiaBlock.OCS, Loop7.InertiaBlock) gives the same automation object, so that a
// script's `Is` holds. Objects register themselves while they live.
class Identity {
  public:
    // The live automation object of a core object, with a reference added; nullptr if none.
    static IUnknown* Find(const void* native, std::type_index type);
    static void Add(const void* native, std::type_index type, IUnknown* object);
    static void Remove(const void* native, std::type_index type);
};

}  // namespace tgp::automation
