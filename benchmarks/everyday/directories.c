// argument: 280
// Walks through a tree of directories with callbacks, patterns and sums.
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
struct entry {
  char name[24];
  int is_dir;
  long size;
  struct entry *first, *next;
};
typedef int (*visitor)(struct entry *, int depth, void *data);
static struct entry *make(const char *name, int dir, long size) {
  struct entry *e = calloc(1, sizeof *e);
  if (!e)
    exit(2);
  snprintf(e->name, sizeof e->name, "%s", name);
  e->is_dir = dir;
  e->size = size;
  return e;
}
static struct entry *populate(int depth, int width, unsigned *seed) {
  char name[24];
  *seed = *seed * 1103515245 + 12345;
  snprintf(name, sizeof name, "n%u", *seed >> 16 & 1023);
  if (depth == 0)
    return make(name, 0, *seed >> 20);
  struct entry *d = make(name, 1, 0);
  for (int i = 0; i < width; i++) {
    struct entry *c = populate(depth - 1 - (i % 2 && depth > 1), width, seed);
    c->next = d->first;
    d->first = c;
  }
  return d;
}
static int walk(struct entry *e, int depth, visitor f, void *data) {
  int r = f(e, depth, data);
  if (r)
    return r;
  for (struct entry *c = e->first; c; c = c->next) {
    r = walk(c, depth + 1, f, data);
    if (r)
      return r;
  }
  return 0;
}
static long disk_usage(const struct entry *e) {
  long total = e->size;
  for (const struct entry *c = e->first; c; c = c->next)
    total += disk_usage(c);
  return total;
}
static struct entry *find(struct entry *e, const char *name) {
  if (!strcmp(e->name, name))
    return e;
  for (struct entry *c = e->first; c; c = c->next) {
    struct entry *r = find(c, name);
    if (r)
      return r;
  }
  return NULL;
}
static int match(const char *p, const char *s) {
  if (!*p)
    return !*s;
  if (*p == '*')
    return match(p + 1, s) || (*s && match(p, s + 1));
  return *s && (*p == '?' || *p == *s) && match(p + 1, s + 1);
}
static int files(const struct entry *e) {
  if (!e)
    return 0;
  return !e->is_dir + files(e->first) + files(e->next);
}
static int deepest(const struct entry *e) {
  if (!e)
    return 0;
  int below = 1 + deepest(e->first), beside = deepest(e->next);
  return below > beside ? below : beside;
}
static void destroy(struct entry *e) {
  if (!e)
    return;
  destroy(e->first);
  destroy(e->next);
  free(e);
}
static int count_matches(struct entry *e, int depth, void *data) {
  *(long *)data += match("*1?*", e->name) + depth;
  return 0;
}
static int sum_large(struct entry *e, int depth, void *data) {
  if (e->size > 2000)
    *(long *)data += e->size;
  (void)depth;
  return 0;
}
int main(int argc, char **argv) {
  int n = argc > 1 ? atoi(argv[1]) : 100;
  unsigned seed = 5;
  long r = 0;
  struct entry *root = populate(7, 5, &seed);
  for (int i = 0; i < n; i++) {
    walk(root, 0, count_matches, &r);
    walk(root, 0, sum_large, &r);
    r += disk_usage(root) + files(root) + deepest(root);
    char name[24];
    snprintf(name, sizeof name, "n%d", 2000 + i);
    r += find(root, name) != NULL;
  }
  printf("%ld\n", r);
  destroy(root);
}
