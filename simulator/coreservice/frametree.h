#pragma once

#include "simulator/coreservice/edidproperties.h"
#include "simulator/coreservice/healthproperties.h"
#include "simulator/coreservice/portproperties.h"
#include "simulator/coreservice/propertytree.h"
#include "simulator/coreservice/systemproperties.h"

/// The bare tree of a frame's properties, before anything gets hold of it.
struct FrameTree : PropertyTree
{
    explicit FrameTree(const FrameDescriptor &frame)
    {
        addSystemProperties(*this, frame);
        addPortProperties(*this, frame);
        addEdidProperties(*this, frame);
        addHealthProperties(*this, frame);
    }
};
