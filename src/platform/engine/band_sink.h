#pragma once

#include "platform/engine/band.h"

namespace corvane {

/// Takes the bands of a layout in the order of its rows.
class BandSink
{
public:
    virtual ~BandSink() = default;
    /// What comes next begins a group of this level, the first of the report or not.
    virtual void openGroup(int level, const Group &group, bool isFirst) = 0;
    /// The group of this level has all its bands; with `wantsPage` the next one starts a page.
    virtual void closeGroup(int level, bool wantsPage) = 0;
    /// A group's header. The sink may take the band's content.
    virtual void addHeader(Band &band, int level, bool isRepeated) = 0;
    /// A detail or a footer. The sink may take the band's content.
    virtual void add(Band &band) = 0;
};

} // namespace corvane
