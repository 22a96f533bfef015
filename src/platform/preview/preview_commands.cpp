#include "platform/preview/preview_commands.h"

#include <QtCore/QCoreApplication>

#include <array>

namespace corvane {

namespace {

// Ctrl+Home, Ctrl+End, Ctrl+C and Ctrl+A belong to lists and text boxes too, so they need the
// focus.
constexpr std::array<PreviewCommandLook, kPreviewCommandCount> kLooks{{
    {"first", "First page", Qt::Key_Home, Qt::ControlModifier, KeyScope::Page},
    {"previous", "Previous page", Qt::Key_PageUp, Qt::ControlModifier},
    {"next", "Next page", Qt::Key_PageDown, Qt::ControlModifier},
    {"last", "Last page", Qt::Key_End, Qt::ControlModifier, KeyScope::Page},
    {"go-to-page", "Go to page…", Qt::Key_G, Qt::ControlModifier},
    {"back", "Back to where you were", Qt::Key_Left, Qt::AltModifier},
    {"forward", "Forward again", Qt::Key_Right, Qt::AltModifier},
    {"zoom-in", "Zoom in", Qt::Key_Equal, Qt::ControlModifier, KeyScope::Window, false,
        QKeySequence::ZoomIn},
    {"zoom-out", "Zoom out", Qt::Key_Minus, Qt::ControlModifier, KeyScope::Window, false,
        QKeySequence::ZoomOut},
    {"actual-size", "Actual size", Qt::Key_0, Qt::ControlModifier},
    {"whole-page", "Whole page", Qt::Key_1, Qt::ControlModifier},
    {"page-width", "Page width", Qt::Key_2, Qt::ControlModifier},
    {"single-page", "One page at a time", Qt::Key_3, Qt::ControlModifier, KeyScope::Window, true},
    {"side-panel", "Groups and pages", Qt::Key_F9, Qt::NoModifier, KeyScope::Window, true},
    {"find", "Find…", Qt::Key_F, Qt::ControlModifier},
    {"find-next", "Find next", Qt::Key_F3, Qt::NoModifier},
    {"find-previous", "Find previous", Qt::Key_F3, Qt::ShiftModifier},
    {"copy", "Copy", Qt::Key_C, Qt::ControlModifier, KeyScope::Page, false, QKeySequence::Copy},
    {"select-all", "Select all", Qt::Key_A, Qt::ControlModifier, KeyScope::Page},
}};

struct PlainKeys
{
    const char *keys;
    const char *action;
};

constexpr PlainKeys kPlainKeys[]{
    {"Page Down, Space", "One screen down"},
    {"Page Up, Shift+Space", "One screen up"},
    {"Up, Down, Left, Right", "Scroll a little"},
    {"Home", "Top of the page"},
    {"End", "Foot of the page"},
    {"+, -", "Zoom in, zoom out"},
    {"Shift+mouse wheel", "Scroll sideways"},
    {"Ctrl+mouse wheel, two fingers", "Zoom around the pointer"},
    {"Middle button and drag, Space and drag", "Move the paper by hand"},
    {"Drag", "Select text"},
    {"Double click", "Select a word"},
    {"Triple click", "Select a line"},
    {"Shift+click", "Extend the selection"},
    {"Enter, Shift+Enter in the search box", "Find next, find previous"},
    {"Escape",
        "Clear the selection; in the search box end the search; in the boxes for page and zoom go "
        "back to the report"},
    {"Menu key, right click", "Menu of the page"},
};

QString words(const char *text)
{
    return QCoreApplication::translate("Preview", text);
}

} // namespace

const PreviewCommandLook &lookOf(PreviewCommand command)
{
    return kLooks[size_t(command)];
}

QList<QKeySequence> keysOf(PreviewCommand command)
{
    const PreviewCommandLook &look = lookOf(command);
    QList<QKeySequence> keys{QKeySequence(QKeyCombination(look.modifiers, look.key))};
    for (const QKeySequence &key : QKeySequence::keyBindings(look.standardKey)) {
        if (!keys.contains(key))
            keys += key;
    }
    return keys;
}

QList<KeyHelp> previewKeys()
{
    QList<KeyHelp> table;
    for (size_t i = 0; i < kLooks.size(); ++i)
        table.append({keysOf(PreviewCommand(i)).front().toString(QKeySequence::NativeText),
            words(kLooks[i].text).remove(u'…')});
    for (const PlainKeys &plain : kPlainKeys)
        table.append({words(plain.keys), words(plain.action)});
    return table;
}

} // namespace corvane
