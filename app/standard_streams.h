// Standard input, output and error as the program is started with them.
#pragma once

// Gives each of them that is closed a descriptor that can neither be written nor read to any
// purpose, so that no file which is opened later takes its number, and with it what is printed.
void reserveStandardStreams();
