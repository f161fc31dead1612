-- The pattern matcher, which is recursive; sorting; coroutines; numbers.
print(("key = value; other=thing"):gsub("(%w+)%s*=%s*(%w+)", "%2=%1"))
print(("f(a(b)c)d)e"):match("%b()"), ("THE (quick) fox"):find("%((%a+)%)"))
print(("a,b,,c"):gsub(",?([^,]*)", "<%1>"), ("hello world"):gsub("o", {o = "0"}))
print(("x"):rep(1000):match("^(x*)x$"):len(), ("aaa"):find("a-b"), ("%d"):gsub("%%d", "%%%%"))
print(pcall(string.match, ("a"):rep(250000), (".-"):rep(250000) .. "b"))
for word, gap in ("one  two three"):gmatch("(%a+)(%s*)") do io.write(word, #gap, " ") end
print(("abc"):gsub("", "-"), ("x^2"):gsub("%^", "**"), ("äöü"):byte(1, -1))
print(string.format("%5.2f|%-8s|%08x|%q|%g|%i", 3.14159, "left", 48879, "a\nb", 1e300, 42))

local seed = 12345
local function random(n) seed = (seed * 1103515245 + 12345) % 2147483648 return seed % n end
local numbers = {}
for i = 1, 5000 do numbers[i] = random(100000) end
table.sort(numbers)
local sum = 0
for i, n in ipairs(numbers) do sum = (sum + i * n) % 1000000007 end
print(sum, numbers[1], numbers[2500], numbers[5000])
print(pcall(table.sort, {3, 1, 2, 5, 4}, function() return true end))
table.sort(numbers, function(a, b) return a % 100 < b % 100 or (a % 100 == b % 100 and a < b) end)
print(numbers[1], numbers[2500], numbers[5000])

local function walk(tree) if tree then walk(tree.left) coroutine.yield(tree.key) walk(tree.right) end end
local function insert(tree, key)
  if not tree then return {key = key} end
  local side = key < tree.key and "left" or "right"
  tree[side] = insert(tree[side], key)
  return tree
end
local tree
for i = 1, 300 do tree = insert(tree, random(1000)) end
local keys = {}
for key in coroutine.wrap(function() walk(tree) end) do keys[#keys + 1] = key end
print(#keys, keys[1], keys[150], keys[300])
print(7 // 2, -7 // 2, 7 % -3, 2 ^ 10, 1 << 40, 5 // 0.0, "10" + 5, 0x7fffffffffffffff + 1)
print(pcall(error, {code = 7}), select(2, pcall(function() local x = nil; return x.y end)))
goto done
print("not reached")
::done::
print(setmetatable({}, {__tostring = function() return "object" end}), #"tail", math.type(3 // 1.0))
