// Loaded into the private Janus server beside its own code. Two things it cannot do itself:
// - it passes over loopback interfaces, the only ones that it is to use here;
// - it ends when nobody uses it any more: the file named by CORVANE_RTC_SERVICE_USERS is locked by every user, and the
//   system lets go of the locks of those that end, in whatever way.
#define _GNU_SOURCE
#include <dlfcn.h>
#include <fcntl.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <pthread.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/file.h>
#include <unistd.h>

__attribute__((visibility("default"))) int getifaddrs(struct ifaddrs** list) {
  int (*next)(struct ifaddrs**);
  *(void**)&next = dlsym(RTLD_NEXT, "getifaddrs");
  if (next == NULL) return -1;
  const int result = next(list);
  if (result != 0) return result;
  for (struct ifaddrs* entry = *list; entry != NULL; entry = entry->ifa_next) {
    entry->ifa_flags &= ~(unsigned int)IFF_LOOPBACK;
  }
  return 0;
}

static void* waitForLastUser(void* path) {
  const int users = open((const char*)path, O_RDWR | O_CLOEXEC);
  // The descriptor stays open: a newcomer finds the lock taken until this process is gone.
  if (users >= 0 && flock(users, LOCK_EX) == 0) kill(getpid(), SIGTERM);
  return NULL;
}

__attribute__((constructor)) static void begin(void) {
  char* path = getenv("CORVANE_RTC_SERVICE_USERS");
  if (path == NULL) return;
  // Signals are the server's own threads' to take.
  sigset_t all, before;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &before);
  pthread_t thread;
  if (pthread_create(&thread, NULL, waitForLastUser, path) == 0) pthread_detach(thread);
  pthread_sigmask(SIG_SETMASK, &before, NULL);
}
