#pragma once

#include <QtCore/QString>

namespace corvane {

class MessageBoxes;
struct Reportr;

enum class StartState {
    NoConfiguration, ///< corvane.ini is missing: the program ends
    NoConnection,    ///< nobody can log on; only Exit and the menus remain
    Connected,
};

/// The start-up sequence from corvane.ini to both connections, with its messages.
/// `state.programFolder` and `state.gDateOrder` must be set.
StartState connectDatabases(Reportr &state, MessageBoxes &boxes);

/// Builds and test-opens the second database's connection text; empty when not configured or not reached.
QString getHvnConnect(Reportr &state, MessageBoxes &boxes);

enum class TestedDatabase { Main = 1, Second = 2 };

/// Opens and closes a connection on the text; shows the message of that database when it fails.
bool testConnect(const Reportr &state, MessageBoxes &boxes, const QString &connectString, TestedDatabase selector);

} // namespace corvane
