#pragma once

namespace corvane {

/// Makes the fonts in the folder "fonts" beside the program known, so that pages break alike whatever the computer
/// has; does nothing when the program comes without. Needs a QGuiApplication.
void loadShippedFonts();

/// Lets a program without windows use the computer's own fonts too, which on Windows it would not look for; to be
/// called before the QGuiApplication is made.
void findSystemFonts();

} // namespace corvane
