#pragma once

/// The application: puts the parts together and runs them.
namespace morvo::MorvoBarApp {

/// The process's main function, from its arguments to its exit code.
[[nodiscard]] int run(int argc, char **argv);

} // namespace morvo::MorvoBarApp
