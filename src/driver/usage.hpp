#pragma once

namespace varnoth {

/// Answers a call with a single argument, which can't set a key. For "--help" and "-help": prints
/// how the program is called, takes the log's temporary file away, and gives true, since nobody who
/// asks for help wants a run to start. For another word: points there in a line on standard error.
bool answer_single_argument(int argc, char** argv);

}  // namespace varnoth
