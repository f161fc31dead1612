// The parts of ECMAScript 5 that the interpreters share.
function fib(n) { return n < 2 ? n : fib(n - 1) + fib(n - 2); }
function ack(m, n) {
  return m == 0 ? n + 1 : n == 0 ? ack(m - 1, 1) : ack(m - 1, ack(m, n - 1));
}
function hanoi(n) { return n == 0 ? 0 : hanoi(n - 1) + 1 + hanoi(n - 1); }
print(fib(17), ack(2, 8), hanoi(10));

function permute(list, n, found) {
  if (n == 0) { found.push(list.join('')); return found; }
  for (var i = 0; i < n; i++) {
    var t = list[n - 1]; list[n - 1] = list[i]; list[i] = t;
    permute(list, n - 1, found);
    t = list[n - 1]; list[n - 1] = list[i]; list[i] = t;
  }
  return found;
}
var found = permute(['a', 'b', 'c', 'd', 'e'], 5, []).sort();
print(found.length, found[0], found[60], found[119]);

// Regular expressions: compilation and matching are recursive.
var tests = [
  [/(a+)+b/, 'aaaaaaaaaaab'], [/^(?:(\w+)@(\w+)\.com)$/, 'me@here.com'],
  [/(?=.*\d)(?!.*x)\w{3,8}/i, 'AbC123'], [/((((((((a))))))))\8/, 'aa'],
  [/(x|y|(z(w)?)){2,4}?$/, 'xyzw'], [/[^a-f\d]+/g, 'abc-=xyz123'],
  [/(?:a|ab)(?:c|bcd)(d*)/, 'abcd'], [/(z)((a+)?(b+)?(c))*/, 'zaacbbbcac'],
  [/\bfoo\b.*?(bar){1,3}/, 'a foo barbarbar']
];
for (var i = 0; i < tests.length; i++)
  print(String(tests[i][0]), JSON.stringify(tests[i][0].exec(tests[i][1])));
print('2024-01-15'.replace(/(\d+)-(\d+)-(\d+)/, '$3.$2.$1'), 'a1b22c333'.split(/\d+/).join('|'));

// Nested data, and its text.
function nest(n) { return n == 0 ? [] : {depth: n, inner: nest(n - 1), list: [n, [n, [n]]]}; }
var text = JSON.stringify(nest(30));
print(text.length, JSON.stringify(JSON.parse(text)) === text, text.slice(0, 90));
print(JSON.stringify({a: [1, 'two', null, {b: true}], d: 1.5e-7}, null, 2));
try { var loop = {}; loop.me = loop; JSON.stringify(loop); print('no error'); } catch (e) { print(e instanceof TypeError); }

// Parser: nesting and precedence.
var source = '1';
for (i = 0; i < 60; i++) source = i % 3 == 0 ? '(' + source + ')+' + i : i % 3 == 1 ? i + '-(' + source + ')' : '-' + source;
print(eval(source));
print(new Function('a', 'b', 'if (a) { while (b--) { do { switch (b) { case 1: continue; default: a += b; } } while (0); } } return a;')(5, 10));
try { eval('var ['); } catch (e) { print(e.name); }

// Closures, exceptions, prototypes, sorting.
function counter() { var n = 0; return function () { return ++n; }; }
var c = counter(); c(); c();
print(c(), [5, 3, 9, 1].sort(function (a, b) { return b - a; }), [1, 2, 3].map(function (x) { return x * x; }).reduce(function (a, b) { return a + b; }));
function Shape(name) { this.name = name; }
Shape.prototype.toString = function () { return '<' + this.name + '>'; };
function Circle(r) { Shape.call(this, 'circle' + r); }
Circle.prototype = Object.create(Shape.prototype);
print(String(new Circle(3)), new Circle(1) instanceof Shape, Object.keys({x: 1, y: 2}));
function unwind(n) { try { if (n == 0) throw new Error('bottom'); return unwind(n - 1); } finally { depth++; } }
var depth = 0;
try { unwind(25); } catch (e) { print(e.message, depth); }
outer: for (i = 0; i < 5; i++) for (var j = 0; j < 5; j++) { if (j == 3) continue outer; if (i == 3) break outer; }
print(i, j, (123.456).toFixed(1), (255).toString(16), parseInt('0x1f'), 0.1 + 0.2, 1e21, -0 === 0, 5e-324);
