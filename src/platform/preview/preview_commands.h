#pragma once

#include <QtCore/QList>
#include <QtCore/QString>
#include <QtGui/QKeySequence>

namespace corvane {

/// What the user can ask of a preview by key, button or menu.
enum class PreviewCommand {
    FirstPage,
    PreviousPage,
    NextPage,
    LastPage,
    GoToPage,
    Back,
    Forward,
    ZoomIn,
    ZoomOut,
    ActualSize,
    WholePage,
    PageWidth,
    SinglePage,
    SidePanel,
    Find,
    FindNext,
    FindPrevious,
    Copy,
    SelectAll
};
constexpr size_t kPreviewCommandCount = 19;

/// Where the keys of a command count: Page also where lists and text boxes have the same keys of
/// their own.
enum class KeyScope { Window, Page };

struct PreviewCommandLook
{
    const char *name; ///< object name, and the drawing's where there is one
    const char *text;
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
    KeyScope scope = KeyScope::Window;
    bool isSwitch = false; ///< on or off
    QKeySequence::StandardKey standardKey
        = QKeySequence::UnknownKey; ///< the system's keys beside it
};

const PreviewCommandLook &lookOf(PreviewCommand command);
/// The first one is shown in menus and tooltips.
QList<QKeySequence> keysOf(PreviewCommand command);

/// One line of the table of keys that help shows.
struct KeyHelp
{
    QString keys; ///< in the system's words, several separated by ", "
    QString action;
};
/// All keys and mouse actions of the preview, in the order in which people look for them.
QList<KeyHelp> previewKeys();

} // namespace corvane
