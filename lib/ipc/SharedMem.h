// Shared memory segments named by the recorder's IPC key rule.
#pragma once
#include <cstddef>

void* SharedMem(size_t size, int n);   // create or get, attach, zero-fill
void* _CrShMem(size_t size, int n);
void* AttachMem(int n);                // attach an existing segment, contents untouched
void* _AtShMem(int n);
int RemoveMem(int n);
int _RmShMem(int n);
int DetachMem(const void* address);
