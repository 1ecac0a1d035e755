// The recorder-wide semaphore set (identifier 47); semaphore 1 guards the event-log files.
#pragma once
#include <cstdint>

int Semaphores(const int32_t* values, int count, int n);
int RemoveSems(int n);
int Down(int sem, int n);
int _Down(int sem, int n, int flags);
int DownWithFlag(int sem, int flags, int n);
int Up(int sem, int n);
int _Up(int sem, int n, int flags);
int UpWithFlag(int sem, int flags, int n);
int RemoveAll();
