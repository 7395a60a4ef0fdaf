#pragma once

extern "C" {

/// Prints the implementation details on the advisory-message unit.
void a00aafn_();
}
