! Counts the ways to place queens, row by row.  Fortran passes the row by reference,
! and other files may call the procedure.
module queens
  implicit none
  integer :: column(8), found = 0
contains
  recursive subroutine place(row)
    integer, intent(in) :: row
    integer :: i, j
    if (row > 8) then
      found = found + 1
      return
    end if
    next: do i = 1, 8
      do j = 1, row - 1
        if (column(j) == i .or. abs(column(j) - i) == row - j) cycle next
      end do
      column(row) = i
      call place(row + 1)
    end do next
  end subroutine

  subroutine search()
    call place(1)
  end subroutine
end module

program main
  use queens
  call search()
  print *, found
end program
