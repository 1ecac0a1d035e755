// Process and pipe utilities shared by the recorder's processes.
#pragma once
#include <sys/types.h>
#include <cstddef>

int CheckProcessArgument(int argc, char** argv);
int GetProcessRunningCount(const char* name);
int CheckProcessOverlap(const char* name);
int IsProcessRunning(const char* name);
int ForceKillProcess(const char* name);

int system_printf(const char* format, ...) __attribute__((format(printf, 1, 2)));
int ProcessRunFmt(const char* format, ...) __attribute__((format(printf, 1, 2)));
int ProcessRun(const char* cmdline);
pid_t ProcessPipe3(int* out_fd, int* in_fd, int* err_fd, const char* cmdline);
// Two commands at once, each with its own stdin/stdout/stderr pipes; the descriptor pointers work as
// for ProcessPipe3, one group per command. The second command gets no input: the parent closes the
// write end of its stdin (it reads end of file). Returns the first child's id and stores the second's
// in *pid2 (when not null); both are to be reaped by the caller. -1 when either could not be started
// (a first child already running is then killed and reaped).
pid_t ProcessPipe4(int* out_fd1, int* in_fd1, int* err_fd1, const char* cmdline1,
                   int* out_fd2, int* err_fd2, const char* cmdline2, pid_t* pid2);
pid_t ProcessPipeShell(int* out_fd, int* in_fd, const char* command);
int ProcessOutput(const char* command, char* buffer, size_t size);
int ProcessOutputWithExitCode(const char* command, char* buffer, size_t size);
int WaitProcess(pid_t pid, int options);
void ShowProcessFD(const char* label);

// Splits a command line into at most 32 words (see processpipe.cpp); exposed for tests and the
// process starters. path receives the program to execute; argv the words, argv[0] its base name.
// Returns the word count, or -1 when the word array cannot be allocated. Free with free_cmdline.
int rebuild_cmdline(const char* cmdline, char* path, size_t path_size, char*** argv);
void free_cmdline(char** argv);

int read_line(int fd, char* buffer, int size);
int read_line_bs(int fd, char* buffer, int size);
int read_line2(int fd, char* buffer, int size, int timeout_flag);
int writen(int fd, const void* buffer, size_t count, int add_newline);
