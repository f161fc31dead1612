! Fibonacci numbers by double recursion: an argument by value and an internal
! procedure, which is what the automatic policy can see through without link-time
! optimisation.
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
