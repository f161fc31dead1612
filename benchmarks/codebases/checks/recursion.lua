-- Recursion of several kinds, in the interpreter and in what it is written in.
local function fib(n) return n < 2 and n or fib(n - 1) + fib(n - 2) end
local function ack(m, n)
  if m == 0 then return n + 1 end
  if n == 0 then return ack(m - 1, 1) end
  return ack(m - 1, ack(m, n - 1))
end
local isOdd
local function isEven(n) if n == 0 then return true end return isOdd(n - 1) end
function isOdd(n) if n == 0 then return false end return isEven(n - 1) end
print(fib(24), ack(2, 40), isEven(1001))

local function hanoi(n, from, to, via, moves)
  if n == 0 then return moves end
  moves = hanoi(n - 1, from, via, to, moves)
  return hanoi(n - 1, via, to, from, moves + 1)
end
print(hanoi(14, "a", "b", "c", 0))

local function permute(list, n, found)
  if n == 0 then found[#found + 1] = table.concat(list) return found end
  for i = 1, n do
    list[n], list[i] = list[i], list[n]
    permute(list, n - 1, found)
    list[n], list[i] = list[i], list[n]
  end
  return found
end
local found = permute({"a", "b", "c", "d", "e", "f"}, 6, {})
table.sort(found)
print(#found, found[1], found[360], found[720])

local function queens(n, row, columns, up, down)
  if row > n then return 1 end
  local count = 0
  for c = 1, n do
    if not columns[c] and not up[row + c] and not down[row - c] then
      columns[c], up[row + c], down[row - c] = true, true, true
      count = count + queens(n, row + 1, columns, up, down)
      columns[c], up[row + c], down[row - c] = nil, nil, nil
    end
  end
  return count
end
print(queens(7, 1, {}, {}, {}))

-- Deep nesting: parser, constant folding, garbage collector, stack growth.
local depth = 180
print(load("return " .. ("("):rep(depth) .. "1" .. (")"):rep(depth))())
print(load("return " .. ("- "):rep(150) .. "1")())
local nested = "1"
for i = 1, 150 do nested = i % 2 == 0 and nested .. "+" .. i or i .. "*" .. nested end
print(load("return " .. nested)())
local list
for i = 1, 200000 do list = {list, i} end
collectgarbage()
local length = 0
while list do length, list = length + 1, list[1] end
print(length)
print(pcall(function() local function f() return 1 + f() end return f() end))
print(select("#", table.unpack({}, 1, 200)), (string.rep("x", 20):gsub("x", "%0%0")))
