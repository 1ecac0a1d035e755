// Failure hook of the IPC library: a process may put its emergency clean-up here.
#pragma once

void CleanUp();
