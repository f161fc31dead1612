// argument: 500000
// Parses an expression, evaluates its tree, measures and compares it.
#include <ctype.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
enum kind { NUM, VAR, ADD, SUB, MUL, DIV, NEG };
struct node {
  enum kind kind;
  double value;
  int var;
  struct node *left, *right;
};
struct parser {
  const char *p;
  int errors;
};
static struct node *make(enum kind k, struct node *l, struct node *r) {
  struct node *n = malloc(sizeof *n);
  if (!n)
    exit(2);
  n->kind = k;
  n->left = l;
  n->right = r;
  n->value = 0;
  n->var = 0;
  return n;
}
static void skip(struct parser *ps) {
  while (isspace((unsigned char)*ps->p))
    ps->p++;
}
static struct node *parse_sum(struct parser *ps);
static struct node *parse_atom(struct parser *ps) {
  skip(ps);
  if (*ps->p == '(') {
    ps->p++;
    struct node *n = parse_sum(ps);
    skip(ps);
    if (*ps->p == ')')
      ps->p++;
    else
      ps->errors++;
    return n;
  }
  if (*ps->p == '-') {
    ps->p++;
    return make(NEG, parse_atom(ps), NULL);
  }
  if (isalpha((unsigned char)*ps->p)) {
    struct node *n = make(VAR, NULL, NULL);
    n->var = *ps->p++ - 'a';
    return n;
  }
  struct node *n = make(NUM, NULL, NULL);
  double v = 0;
  if (!isdigit((unsigned char)*ps->p)) {
    ps->errors++;
    return n;
  }
  while (isdigit((unsigned char)*ps->p))
    v = v * 10 + (*ps->p++ - '0');
  n->value = v;
  return n;
}
static struct node *parse_product(struct parser *ps) {
  struct node *l = parse_atom(ps);
  for (;;) {
    skip(ps);
    if (*ps->p == '*') {
      ps->p++;
      l = make(MUL, l, parse_atom(ps));
    } else if (*ps->p == '/') {
      ps->p++;
      l = make(DIV, l, parse_atom(ps));
    } else
      return l;
  }
}
static struct node *parse_sum(struct parser *ps) {
  struct node *l = parse_product(ps);
  for (;;) {
    skip(ps);
    if (*ps->p == '+') {
      ps->p++;
      l = make(ADD, l, parse_product(ps));
    } else if (*ps->p == '-') {
      ps->p++;
      l = make(SUB, l, parse_product(ps));
    } else
      return l;
  }
}
static double eval(const struct node *n, const double *vars) {
  switch (n->kind) {
  case NUM:
    return n->value;
  case VAR:
    return vars[n->var];
  case ADD:
    return eval(n->left, vars) + eval(n->right, vars);
  case SUB:
    return eval(n->left, vars) - eval(n->right, vars);
  case MUL:
    return eval(n->left, vars) * eval(n->right, vars);
  case DIV: {
    double d = eval(n->right, vars);
    return d == 0 ? 0 : eval(n->left, vars) / d;
  }
  case NEG:
    return -eval(n->left, vars);
  }
  return 0;
}
static int height(const struct node *n) {
  if (!n)
    return 0;
  int l = height(n->left), r = height(n->right);
  return 1 + (l > r ? l : r);
}
static int count(const struct node *n) {
  return n ? 1 + count(n->left) + count(n->right) : 0;
}
static void release(struct node *n) {
  if (!n)
    return;
  release(n->left);
  release(n->right);
  free(n);
}
static int same(const struct node *a, const struct node *b) {
  if (!a || !b)
    return a == b;
  return a->kind == b->kind && a->value == b->value && a->var == b->var &&
         same(a->left, b->left) && same(a->right, b->right);
}
int main(int argc, char **argv) {
  int n = argc > 1 ? atoi(argv[1]) : 60000;
  const char *text = "(a+b*3-(c/"
                     "(d+1))*(a-b))*(-(x*x)+y*(z-4)*(a+2*(b+3*(c+4*(d+5*x)))))-"
                     "(((a+1)*b+2)*c+3)*d/(1+x*x)";
  struct parser ps = {text, 0}, ps2 = {text, 0};
  struct node *t = parse_sum(&ps), *u = parse_sum(&ps2);
  double vars[26], sum = 0;
  long cnt = 0;
  for (int i = 0; i < 26; i++)
    vars[i] = i * 0.5;
  for (int i = 0; i < n; i++) {
    vars[i % 26] += 0.001;
    sum += eval(t, vars);
    if (i % 4 == 0)
      cnt += height(t) + count(t) + same(t, u);
  }
  printf("%.6g %ld %d\n", sum, cnt, ps.errors);
  release(t);
  release(u);
  return 0;
}
