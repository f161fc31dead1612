! Fibonacci numbers by double recursion: an argument by value and an internal
! procedure, entered with a constant, so that there is a copy for each number below
! it, of which equal calls are made once.
program main
  implicit none
  print *, fibonacci(30)
contains
  recursive function fibonacci(n) result(r)
    integer, value :: n
    integer :: r
    if (n < 2) then
      r = n
    else
      r = fibonacci(n - 1) + fibonacci(n - 2)
    end if
  end function
end program
