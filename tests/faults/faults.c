/* A library to be preloaded: it counts the calls to the system and lets those fail that the plan names. */

#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <stdarg.h>
#include <stdbool.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/faults/fault_plan.h"

/* The allocator below the one that is replaced, which the loader needs before symbols can be looked up. */
extern void* __libc_malloc(size_t size);
extern void* __libc_calloc(size_t count, size_t size);
extern void* __libc_realloc(void* memory, size_t size);
extern void* __libc_memalign(size_t alignment, size_t size);

static struct FaultPlan* plan;

__attribute__((constructor)) static void begin(void) {
  const char* path = getenv(FAULT_PLAN_VARIABLE);
  if (!path || strcmp(program_invocation_short_name, FAULTY_PROGRAM) != 0) return;
  const int file = (int)syscall(SYS_openat, AT_FDCWD, path, O_RDWR | O_CLOEXEC);
  if (file < 0) return;
  void* memory =
      (void*)syscall(SYS_mmap, NULL, sizeof(struct FaultPlan), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
  syscall(SYS_close, file);
  if (memory == MAP_FAILED) return;
  plan = memory;
}

/* Counts a call; whether it fails, with the error of the plan in errno. */
static bool fails(enum FaultKind kind) {
  if (!plan) return false;
  const long number = __atomic_add_fetch(&plan->calls[kind], 1, __ATOMIC_RELAXED);
  if (plan->kind != (int)kind || number < plan->at || number > plan->last) return false;
  if (plan->error < 0) kill(getpid(), -plan->error);
  errno = plan->error;
  return plan->error >= 0;
}

/* The same for a call that moves bytes: how many it is to move, or -1 when it fails. */
static ssize_t allowed(enum FaultKind kind, size_t count) {
  if (!fails(kind)) return (ssize_t)count;
  return plan->error != 0 ? -1 : (ssize_t)(count - count / 2);
}

/* Declares a pointer to the function of the system that one of these here stands before. */
#define NEXT(name, pointer)         \
  __typeof__(&name) pointer = NULL; \
  *(void**)&pointer = dlsym(RTLD_NEXT, #name)

void* malloc(size_t size) {
  return fails(faultMemory) ? NULL : __libc_malloc(size);
}

void* calloc(size_t count, size_t size) {
  return fails(faultMemory) ? NULL : __libc_calloc(count, size);
}

void* realloc(void* memory, size_t size) {
  return fails(faultMemory) ? NULL : __libc_realloc(memory, size);
}

void* memalign(size_t alignment, size_t size) {
  return fails(faultMemory) ? NULL : __libc_memalign(alignment, size);
}

void* aligned_alloc(size_t alignment, size_t size) {
  return memalign(alignment, size);
}

int posix_memalign(void** memory, size_t alignment, size_t size) {
  void* made = memalign(alignment, size);
  if (!made) return ENOMEM;
  *memory = made;
  return 0;
}

void* mmap(void* address, size_t size, int protection, int flags, int file, off_t offset) {
  if (fails(faultMap)) return MAP_FAILED;
  return (void*)syscall(SYS_mmap, address, size, protection, flags, file, offset);
}

void* mmap64(void* address, size_t size, int protection, int flags, int file, off_t offset) {
  return mmap(address, size, protection, flags, file, offset);
}

#define MODE(flags)                                       \
  mode_t mode = 0;                                        \
  if ((flags) & (O_CREAT | (O_TMPFILE & ~O_DIRECTORY))) { \
    va_list more;                                         \
    va_start(more, flags);                                \
    mode = va_arg(more, mode_t);                          \
    va_end(more);                                         \
  }

static int openFile(int folder, const char* path, int flags, mode_t mode) {
  return fails(faultOpen) ? -1 : (int)syscall(SYS_openat, folder, path, flags, mode);
}

int open(const char* path, int flags, ...) {
  MODE(flags)
  return openFile(AT_FDCWD, path, flags, mode);
}

int open64(const char* path, int flags, ...) {
  MODE(flags)
  return openFile(AT_FDCWD, path, flags, mode);
}

int openat(int folder, const char* path, int flags, ...) {
  MODE(flags)
  return openFile(folder, path, flags, mode);
}

int openat64(int folder, const char* path, int flags, ...) {
  MODE(flags)
  return openFile(folder, path, flags, mode);
}

char* mkdtemp(char* path) {
  NEXT(mkdtemp, next);
  return fails(faultOpen) ? NULL : next(path);
}

int memfd_create(const char* name, unsigned flags) {
  return fails(faultOpen) ? -1 : (int)syscall(SYS_memfd_create, name, flags);
}

ssize_t read(int file, void* bytes, size_t count) {
  const ssize_t most = allowed(faultRead, count);
  return most < 0 ? -1 : syscall(SYS_read, file, bytes, (size_t)most);
}

ssize_t pread64(int file, void* bytes, size_t count, off_t offset) {
  const ssize_t most = allowed(faultRead, count);
  return most < 0 ? -1 : syscall(SYS_pread64, file, bytes, (size_t)most, offset);
}

ssize_t write(int file, const void* bytes, size_t count) {
  const ssize_t most = allowed(faultWrite, count);
  return most < 0 ? -1 : syscall(SYS_write, file, bytes, (size_t)most);
}

ssize_t pwrite64(int file, const void* bytes, size_t count, off_t offset) {
  const ssize_t most = allowed(faultWrite, count);
  return most < 0 ? -1 : syscall(SYS_pwrite64, file, bytes, (size_t)most, offset);
}

ssize_t writev(int file, const struct iovec* parts, int count) {
  return fails(faultWrite) ? -1 : syscall(SYS_writev, file, parts, count);
}

int fsync(int file) {
  return fails(faultSync) ? -1 : (int)syscall(SYS_fsync, file);
}

int fdatasync(int file) {
  return fails(faultSync) ? -1 : (int)syscall(SYS_fdatasync, file);
}

int ftruncate64(int file, off_t size) {
  return fails(faultTruncate) ? -1 : (int)syscall(SYS_ftruncate, file, size);
}

int ftruncate(int file, off_t size) {
  return ftruncate64(file, size);
}

int rename(const char* from, const char* to) {
  return fails(faultRename) ? -1 : (int)syscall(SYS_rename, from, to);
}

int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) {
  return fails(faultRename) ? -1 : (int)syscall(SYS_renameat2, fromFolder, from, toFolder, to, flags);
}

/* The descriptor is gone in any case, as the kernel has it. */
int close(int file) {
  const int result = (int)syscall(SYS_close, file);
  return fails(faultClose) ? -1 : result;
}

int pipe2(int ends[2], int flags) {
  return fails(faultPipe) ? -1 : (int)syscall(SYS_pipe2, ends, flags);
}

pid_t fork(void) {
  NEXT(fork, next);
  return fails(faultSpawn) ? -1 : next();
}

int posix_spawn(pid_t* process, const char* path, const posix_spawn_file_actions_t* files,
                const posix_spawnattr_t* attributes, char* const words[], char* const environment[]) {
  NEXT(posix_spawn, next);
  if (fails(faultSpawn)) return errno;
  return next(process, path, files, attributes, words, environment);
}

pid_t waitpid(pid_t process, int* status, int options) {
  return fails(faultWait) ? -1 : (pid_t)syscall(SYS_wait4, process, status, options, NULL);
}

int waitid(idtype_t kind, id_t id, siginfo_t* information, int options) {
  return fails(faultWait) ? -1 : (int)syscall(SYS_waitid, kind, id, information, options, NULL);
}

int poll(struct pollfd* files, nfds_t count, int timeout) {
  return fails(faultPoll) ? -1 : (int)syscall(SYS_poll, files, count, timeout);
}
