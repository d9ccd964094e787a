#pragma once

/// From here on a crash leaves no image of the memory behind, which holds the passwords in clear, and no other program
/// of this user can look into it.
void forbidCoreDumps();
