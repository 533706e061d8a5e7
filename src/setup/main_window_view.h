#pragma once

// Everything that the main window shows, derived from the setup in one place. The window only
// copies it onto its controls.

#include "setup/operation_setup.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace zr5 {

/// What stands in the place of the menu. Everything but the menu disables the rest; so does
/// Waiting, in which the menu stands disabled behind a picker or a question.
enum class Pane { Menu, Waiting, Setup, SaveSetup, Key, Randomness };

struct MainWindowState {
    OperationSetup setup;
    Pane pane = Pane::Menu;
    /// Whether `cmdListFiles` was enabled by the last refresh: its note follows it.
    bool listFilesWasEnabled = false;
    std::optional<std::uint64_t> inputLengthBytes; ///< of the single input file
};

struct ControlView {
    std::optional<std::string> text; ///< caption, label or box; not set: not this view's
    bool enabled = true;
    bool visible = true;
    bool bold = false;
    bool checked = false; ///< option buttons
    std::string toolTip;
};

/// By the control's name; the k-th of an indexed group is "name(k)".
using MainWindowView = std::map<std::string, ControlView, std::less<>>;

[[nodiscard]] MainWindowView DeriveMainWindow(const MainWindowState& state);

} // namespace zr5
