// The side of a template (see WorkerTemplate): a process that forks workers.
#pragma once

#include <span>
#include <string>
#include <vector>

namespace dxf2d {

// Loads `libraries`. Then forks a worker for each request of the socket, until its other side is
// closed, which ends this process. Returns in the workers alone, with the words of their command
// lines, once their parent knows of them; the descriptors of their calls have the numbers that they
// have there. A worker is a child not of this process but of its parent.
//
// For a process with one thread.
std::vector<std::string> serveForks(int socket, std::span<const std::string> libraries);

}  // namespace dxf2d
