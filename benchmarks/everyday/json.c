// argument: 220
// Parses, copies, sums up, compares and measures a document like JSON.
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
enum type { T_NULL, T_BOOL, T_NUMBER, T_STRING, T_ARRAY, T_OBJECT };
struct value {
  enum type type;
  double num;
  char *str;
  char *key;
  struct value *child, *next;
};
static const char *cur;
static void ws(void) {
  while (*cur == ' ' || *cur == '\n' || *cur == '\t')
    cur++;
}
static struct value *new_value(enum type t) {
  struct value *v = calloc(1, sizeof *v);
  if (!v)
    exit(2);
  v->type = t;
  return v;
}
static char *parse_string(void) {
  const char *s = ++cur;
  while (*cur && *cur != '"')
    cur++;
  size_t n = cur - s;
  char *r = malloc(n + 1);
  memcpy(r, s, n);
  r[n] = 0;
  if (*cur)
    cur++;
  return r;
}
static struct value *parse_value(void) {
  ws();
  struct value *v, **tail;
  switch (*cur) {
  case '{':
    v = new_value(T_OBJECT);
    tail = &v->child;
    cur++;
    ws();
    while (*cur && *cur != '}') {
      char *key = parse_string();
      ws();
      if (*cur == ':')
        cur++;
      struct value *c = parse_value();
      c->key = key;
      *tail = c;
      tail = &c->next;
      ws();
      if (*cur == ',')
        cur++;
      ws();
    }
    if (*cur)
      cur++;
    return v;
  case '[':
    v = new_value(T_ARRAY);
    tail = &v->child;
    cur++;
    ws();
    while (*cur && *cur != ']') {
      struct value *c = parse_value();
      *tail = c;
      tail = &c->next;
      ws();
      if (*cur == ',')
        cur++;
      ws();
    }
    if (*cur)
      cur++;
    return v;
  case '"':
    v = new_value(T_STRING);
    v->str = parse_string();
    return v;
  case 't':
    v = new_value(T_BOOL);
    v->num = 1;
    cur += 4;
    return v;
  case 'f':
    v = new_value(T_BOOL);
    cur += 5;
    return v;
  case 'n':
    cur += 4;
    return new_value(T_NULL);
  default: {
    char *end;
    v = new_value(T_NUMBER);
    v->num = strtod(cur, &end);
    if (end == cur)
      end++;
    cur = end;
    return v;
  }
  }
}
static void free_value(struct value *v) {
  if (!v)
    return;
  free_value(v->next);
  free_value(v->child);
  free(v->str);
  free(v->key);
  free(v);
}
static int depth(const struct value *v) {
  int best = 0;
  for (const struct value *c = v->child; c; c = c->next) {
    int d = depth(c);
    if (d > best)
      best = d;
  }
  return best + 1;
}
static double total(const struct value *v) {
  double s = v->type == T_NUMBER ? v->num : 0;
  for (const struct value *c = v->child; c; c = c->next)
    s += total(c);
  return s;
}
static int equal(const struct value *a, const struct value *b) {
  if (a->type != b->type || a->num != b->num)
    return 0;
  const struct value *x = a->child, *y = b->child;
  while (x && y) {
    if (!equal(x, y))
      return 0;
    x = x->next;
    y = y->next;
  }
  return !x && !y;
}
static size_t print_size(const struct value *v) {
  size_t n = v->key ? strlen(v->key) + 3 : 0;
  switch (v->type) {
  case T_NULL:
  case T_BOOL:
    return n + 4;
  case T_NUMBER:
    return n + 8;
  case T_STRING:
    return n + strlen(v->str) + 2;
  default:
    n += 2;
    for (const struct value *c = v->child; c; c = c->next)
      n += print_size(c) + 1;
    return n;
  }
}
static struct value *copy(const struct value *v) {
  if (!v)
    return NULL;
  struct value *c = new_value(v->type);
  c->num = v->num;
  c->str = v->str ? strdup(v->str) : NULL;
  c->key = v->key ? strdup(v->key) : NULL;
  c->child = copy(v->child);
  c->next = copy(v->next);
  return c;
}
static char *text;
static char *generate(char *p, int d) {
  if (d == 0)
    return p + sprintf(p, "%d", (int)(p - text) % 97);
  if (d % 2) {
    *p++ = '[';
    for (int i = 0; i < 4; i++) {
      p = generate(p, d - 1);
      *p++ = ',';
    }
    *p++ = ' ';
    *p++ = ']';
  } else {
    *p++ = '{';
    for (int i = 0; i < 3; i++) {
      p += sprintf(p, "\"key%d\": ", i);
      p = generate(p, d - 1);
      *p++ = ',';
    }
    *p++ = '}';
  }
  *p = 0;
  return p;
}
int main(int argc, char **argv) {
  int n = argc > 1 ? atoi(argv[1]) : 60;
  text = malloc(1 << 20);
  generate(text, 7);
  double s = 0;
  size_t z = 0;
  int e = 0, d = 0;
  for (int i = 0; i < n; i++) {
    cur = text;
    struct value *v = parse_value(), *c = copy(v);
    for (int k = 0; k < 8; k++) {
      s += total(v) > 0;
      z += print_size(v);
      d += depth(v);
      e += equal(v, c);
    }
    free_value(v);
    free_value(c);
  }
  printf("%g %zu %d %d\n", s, z, e, d);
}
