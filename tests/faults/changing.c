/* Preloaded into a program: the file whose path ends in CHANGED_FILE is changed once more than its first 64 KB were
   read, as CHANGE says: "cut" to half its size, "grow" by some text, or "replace" it by CHANGED_FILE.new. */

#define _GNU_SOURCE
#include <dlfcn.h>
#include <fcntl.h>
#include <limits.h>
#include <stdbool.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

static const off_t kBefore = 1 << 16; /* what looks at the form of a file reads less */

static bool endsWith(const char* text, const char* end) {
  const size_t length = strlen(text);
  return strlen(end) <= length && strcmp(text + length - strlen(end), end) == 0;
}

static void changeFile(const char* path, const char* change) {
  struct stat status;
  if (stat(path, &status) != 0) return;
  if (strcmp(change, "cut") == 0) {
    if (truncate(path, status.st_size / 2) != 0) abort();
  } else if (strcmp(change, "grow") == 0) {
    const int file = open(path, O_WRONLY | O_APPEND | O_CLOEXEC);
    if (write(file, "more\n", 5) != 5) abort();
    close(file);
  } else {
    char fresh[PATH_MAX + sizeof ".new"];
    snprintf(fresh, sizeof fresh, "%s.new", path);
    if (rename(fresh, path) != 0) abort();
  }
}

ssize_t read(int file, void* bytes, size_t count) {
  static bool done;
  ssize_t (*next)(int, void*, size_t) = NULL;
  *(void**)&next = dlsym(RTLD_NEXT, "read");
  const ssize_t moved = next(file, bytes, count);
  const char* sought = getenv("CHANGED_FILE");
  const char* change = getenv("CHANGE");
  if (done || !sought || !change || moved <= 0 || lseek(file, 0, SEEK_CUR) <= kBefore) return moved;
  char link[64];
  char path[PATH_MAX];
  snprintf(link, sizeof link, "/proc/self/fd/%d", file);
  const ssize_t length = readlink(link, path, sizeof path - 1);
  if (length <= 0) return moved;
  path[length] = '\0';
  if (!endsWith(path, sought)) return moved;
  done = true;
  changeFile(path, change);
  return moved;
}
