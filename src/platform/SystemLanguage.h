#pragma once

/// The program's language for this system: 1 Italian, 3 French, 4 German by the language of the locale (whatever the
/// country), 2 English for every other one.
int systemLanguage();
