// argument: 120
// A map in a binary tree: insert, look up, height, sum, ranges, visitors.
#include <stdio.h>
#include <stdlib.h>
struct node {
  int key, value;
  struct node *left, *right;
};
static struct node *insert(struct node *n, int key, int value) {
  if (!n) {
    n = malloc(sizeof *n);
    if (!n)
      exit(2);
    n->key = key;
    n->value = value;
    n->left = n->right = NULL;
    return n;
  }
  if (key < n->key)
    n->left = insert(n->left, key, value);
  else if (key > n->key)
    n->right = insert(n->right, key, value);
  else
    n->value = value;
  return n;
}
static const struct node *lookup(const struct node *n, int key) {
  if (!n || n->key == key)
    return n;
  return lookup(key < n->key ? n->left : n->right, key);
}
static int height(const struct node *n) {
  if (n == NULL)
    return 0;
  int l = height(n->left), r = height(n->right);
  return 1 + (l > r ? l : r);
}
static long sum(const struct node *n) {
  return n ? n->value + sum(n->left) + sum(n->right) : 0;
}
static int count(const struct node *n) {
  if (!n)
    return 0;
  return count(n->left) + count(n->right) + 1;
}
static int leaves(const struct node *n) {
  if (!n)
    return 0;
  if (!n->left && !n->right)
    return 1;
  return leaves(n->left) + leaves(n->right);
}
static void visit(const struct node *n, void (*f)(const struct node *, void *),
                  void *data) {
  if (!n)
    return;
  visit(n->left, f, data);
  f(n, data);
  visit(n->right, f, data);
}
static int range(const struct node *n, int lo, int hi) {
  if (!n)
    return 0;
  if (n->key < lo)
    return range(n->right, lo, hi);
  if (n->key > hi)
    return range(n->left, lo, hi);
  return 1 + range(n->left, lo, hi) + range(n->right, lo, hi);
}
static void mirror(struct node *n) {
  if (!n)
    return;
  struct node *t = n->left;
  n->left = n->right;
  n->right = t;
  mirror(n->left);
  mirror(n->right);
}
static int is_ordered(const struct node *n, long lo, long hi) {
  if (!n)
    return 1;
  if (n->key <= lo || n->key >= hi)
    return 0;
  return is_ordered(n->left, lo, n->key) && is_ordered(n->right, n->key, hi);
}
static void destroy(struct node *n) {
  if (n) {
    destroy(n->left);
    destroy(n->right);
    free(n);
  }
}
static void add_up(const struct node *n, void *data) {
  *(long *)data += n->key ^ n->value;
}
int main(int argc, char **argv) {
  int n = argc > 1 ? atoi(argv[1]) : 30;
  unsigned s = 12345;
  struct node *t = NULL;
  for (int i = 0; i < 4000; i++) {
    s = s * 1103515245 + 12345;
    t = insert(t, s >> 8 & 0xffff, i);
  }
  long r = 0;
  for (int i = 0; i < n; i++) {
    for (int k = 0; k < 3000; k++) {
      s = s * 1103515245 + 12345;
      const struct node *f = lookup(t, s >> 8 & 0xffff);
      r += f ? f->value : 1;
    }
    for (int k = 0; k < 500; k++) {
      s = s * 1103515245 + 12345;
      t = insert(t, s >> 8 & 0xffff, k);
    }
    r += height(t) + sum(t) + count(t) + leaves(t) + is_ordered(t, -1, 1 << 20);
    for (int k = 0; k < 20; k++)
      r += range(t, k * 1000, k * 1000 + 3000);
    visit(t, add_up, &r);
    mirror(t);
    mirror(t);
  }
  printf("%ld\n", r);
  destroy(t);
}
