// What the keys do in the rows of the report grid.
#pragma once

#include <QtGlobal>

QT_FORWARD_DECLARE_CLASS(QKeyEvent)

namespace zul {

class ReportGridView;

/// Does what the key means in a report grid beyond a list's own keys: ticking, opening and closing groups, copying,
/// moving sideways. Keys that are the window's (Esc, Enter, F2) are left to it: their event is ignored. False when the key
/// is a list's own.
///
/// | key | what it does |
/// |---|---|
/// | Space | ticks the highlighted rows, or takes their ticks off; opens or closes a group |
/// | Ins | the same, but on a group the ticks of its rows |
/// | Left, − | closes a group; Left elsewhere scrolls, then goes to the group around the row |
/// | Right, + | opens a group; Right elsewhere scrolls |
/// | Ctrl+C | copies the highlighted rows |
/// | Ctrl+F | opens the bar that finds and filters, where the grid has one |
/// | Ctrl+Z | takes back the last ticking |
/// | Up, Down | highlight the row with the focus first when nothing is highlighted |
bool pressGridKey(ReportGridView& view, QKeyEvent& event);

} // namespace zul
