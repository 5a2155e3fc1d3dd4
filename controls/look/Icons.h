// The system's own set of icons.
#pragma once

#include <QIcon>

namespace zul {

enum class IconId
{
    Search,
    Advanced,
    Cancel,
    Close,
    NewText,
    Confirm,
    Folder,
    Clear,
    Dots,
    Calendar,
    Keyboard,
    Send,
    SelectAll,
    DeselectAll,
    SelectHighlighted,
    DeselectHighlighted,
    Next,
    Start,
    Disable,
    Save,
    Customer,
    Backspace,
    Shift,
    Enter,
    HideKeyboard,
    Previous,
    Preview
};

enum class IconTone
{
    Text,    // dark lines on the white windows
    OnAccent // white lines, for the button that is filled with the accent colour
};

/// Drawn on 16 x 16 units and sharp at every scale. Disabled buttons show it paler.
[[nodiscard]] QIcon icon(IconId id, IconTone tone = IconTone::Text);

/// The icons under their numbers in the shared image list: 1 cancel, 3 new text, 9 confirm. A null icon for
/// any other number.
[[nodiscard]] QIcon imageListIcon(int number, IconTone tone = IconTone::Text);

} // namespace zul
