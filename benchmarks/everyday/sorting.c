// argument: 30
// Sorts records, numbers and lists; searches, powers, common divisors.
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
struct record {
  int id;
  double score;
  char name[16];
};
struct list {
  struct record rec;
  struct list *next;
};
static int compare(const struct record *a, const struct record *b) {
  if (a->score != b->score)
    return a->score < b->score ? -1 : 1;
  return a->id - b->id;
}
static void quick(struct record *a, int lo, int hi) {
  if (lo >= hi)
    return;
  struct record pivot = a[(lo + hi) / 2];
  int i = lo, j = hi;
  while (i <= j) {
    while (compare(&a[i], &pivot) < 0)
      i++;
    while (compare(&a[j], &pivot) > 0)
      j--;
    if (i <= j) {
      struct record t = a[i];
      a[i] = a[j];
      a[j] = t;
      i++;
      j--;
    }
  }
  quick(a, lo, j);
  quick(a, i, hi);
}
static void merge_sort(int *a, int *tmp, int n) {
  if (n < 2)
    return;
  int m = n / 2, i = 0, j = m, k = 0;
  merge_sort(a, tmp, m);
  merge_sort(a + m, tmp, n - m);
  while (i < m && j < n)
    tmp[k++] = a[j] < a[i] ? a[j++] : a[i++];
  while (i < m)
    tmp[k++] = a[i++];
  while (j < n)
    tmp[k++] = a[j++];
  memcpy(a, tmp, n * sizeof *a);
}
static struct list *merge(struct list *a, struct list *b) {
  if (!a)
    return b;
  if (!b)
    return a;
  if (compare(&a->rec, &b->rec) <= 0) {
    a->next = merge(a->next, b);
    return a;
  }
  b->next = merge(a, b->next);
  return b;
}
static struct list *sort_list(struct list *l) {
  if (!l || !l->next)
    return l;
  struct list *slow = l, *fast = l->next;
  while (fast && fast->next) {
    slow = slow->next;
    fast = fast->next->next;
  }
  struct list *half = slow->next;
  slow->next = NULL;
  return merge(sort_list(l), sort_list(half));
}
static int search(const int *a, int lo, int hi, int key) {
  if (lo > hi)
    return -1;
  int m = lo + (hi - lo) / 2;
  if (a[m] == key)
    return m;
  return a[m] < key ? search(a, m + 1, hi, key) : search(a, lo, m - 1, key);
}
static long power(long b, int e, long m) {
  if (e == 0)
    return 1;
  long h = power(b, e / 2, m);
  h = h * h % m;
  return e % 2 ? h * b % m : h;
}
static int gcd(int a, int b) { return b ? gcd(b, a % b) : a; }
static int kth(int *a, int lo, int hi, int k) {
  if (lo == hi)
    return a[lo];
  int p = a[(lo + hi) / 2], i = lo, j = hi;
  while (i <= j) {
    while (a[i] < p)
      i++;
    while (a[j] > p)
      j--;
    if (i <= j) {
      int t = a[i];
      a[i++] = a[j];
      a[j--] = t;
    }
  }
  if (k <= j)
    return kth(a, lo, j, k);
  if (k >= i)
    return kth(a, i, hi, k);
  return a[k];
}
int main(int argc, char **argv) {
  int n = argc > 1 ? atoi(argv[1]) : 12;
  static struct record r[20000];
  static int a[20000], t[20000];
  static struct list l[3000];
  unsigned s = 99;
  long sum = 0;
  for (int k = 0; k < n; k++) {
    for (int i = 0; i < 20000; i++) {
      s = s * 1103515245 + 12345;
      a[i] = s >> 8;
      r[i].id = i;
      r[i].score = (s >> 12) % 5000;
    }
    for (int i = 0; i < 3000; i++) {
      l[i].rec = r[i];
      l[i].next = i + 1 < 3000 ? &l[i + 1] : NULL;
    }
    sum += kth(a, 0, 19999, 777);
    quick(r, 0, 19999);
    merge_sort(a, t, 20000);
    struct list *h = sort_list(l);
    sum += r[77].id + a[99] + h->rec.id;
    for (int i = 0; i < 20000; i++)
      sum += search(a, 0, 19999, a[i]) + power(i, i, 10007) + gcd(i + 1, 5040);
  }
  printf("%ld\n", sum);
}
