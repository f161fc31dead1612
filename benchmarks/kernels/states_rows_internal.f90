! class: states
! sweep: argument 40 36 38 42
!
! The search of states_rows.c as an internal procedure: counts and sums belong to the
! procedure around it. Here for what compilers make of such a host.
!
! The board and the reference are in states_rows.inc.

#include "states_rows.inc"

module search
  use board
  implicit none

contains

  !> Fills the board that is given so often; each repeat takes the next case.
  subroutine fill_boards(given, repeats, filled, solutions, last_rows)
    integer, intent(in) :: given(cells, 0:cases-1), repeats
    integer(int64), intent(inout) :: filled(side), solutions, last_rows
    integer :: blocked(side, side, side), r
    do r = 0, repeats - 1
      call block_digits(given(:, mod(r, cases)), blocked)
      call fill_row(1)
    end do

  contains

    recursive subroutine fill_row(row)
      integer, intent(in) :: row
      integer :: a, b, c, d, e, f, g, h, i, box_end, number
      integer :: used_a, used_b, used_c, used_d, used_e, used_f, used_g, used_h
#ifdef KERNEL_COUNT
      calls = calls + 1
#endif
      box_end = (row - 1) / box * box + box
      do a = 1, side
        if (blocked(row, 1, a) /= 0) cycle
        used_a = ibset(0, a)
        blocked(row+1:side, 1, a) = blocked(row+1:side, 1, a) + 1
        blocked(row+1:box_end, 1:3, a) = &
            blocked(row+1:box_end, 1:3, a) + 1
        do b = 1, side
          if (blocked(row, 2, b) + ibits(used_a, b, 1) > 0) cycle
          used_b = ibset(used_a, b)
          blocked(row+1:side, 2, b) = blocked(row+1:side, 2, b) + 1
          blocked(row+1:box_end, 1:3, b) = &
              blocked(row+1:box_end, 1:3, b) + 1
          do c = 1, side
            if (blocked(row, 3, c) + ibits(used_b, c, 1) > 0) cycle
            used_c = ibset(used_b, c)
            blocked(row+1:side, 3, c) = blocked(row+1:side, 3, c) + 1
            blocked(row+1:box_end, 1:3, c) = &
                blocked(row+1:box_end, 1:3, c) + 1
            do d = 1, side
              if (blocked(row, 4, d) + ibits(used_c, d, 1) > 0) cycle
              used_d = ibset(used_c, d)
              blocked(row+1:side, 4, d) = blocked(row+1:side, 4, d) + 1
              blocked(row+1:box_end, 4:6, d) = &
                  blocked(row+1:box_end, 4:6, d) + 1
              do e = 1, side
                if (blocked(row, 5, e) + ibits(used_d, e, 1) > 0) cycle
                used_e = ibset(used_d, e)
                blocked(row+1:side, 5, e) = blocked(row+1:side, 5, e) + 1
                blocked(row+1:box_end, 4:6, e) = &
                    blocked(row+1:box_end, 4:6, e) + 1
                do f = 1, side
                  if (blocked(row, 6, f) + ibits(used_e, f, 1) > 0) cycle
                  used_f = ibset(used_e, f)
                  blocked(row+1:side, 6, f) = blocked(row+1:side, 6, f) + 1
                  blocked(row+1:box_end, 4:6, f) = &
                      blocked(row+1:box_end, 4:6, f) + 1
                  do g = 1, side
                    if (blocked(row, 7, g) + ibits(used_f, g, 1) > 0) cycle
                    used_g = ibset(used_f, g)
                    blocked(row+1:side, 7, g) = blocked(row+1:side, 7, g) + 1
                    blocked(row+1:box_end, 7:9, g) = &
                        blocked(row+1:box_end, 7:9, g) + 1
                    do h = 1, side
                      if (blocked(row, 8, h) + ibits(used_g, h, 1) > 0) cycle
                      used_h = ibset(used_g, h)
                      blocked(row+1:side, 8, h) = blocked(row+1:side, 8, h) + 1
                      blocked(row+1:box_end, 7:9, h) = &
                          blocked(row+1:box_end, 7:9, h) + 1
                      do i = 1, side
                        if (blocked(row, 9, i) + ibits(used_h, i, 1) > 0) cycle
                        filled(row) = filled(row) + 1
                        if (row < side) then
                          blocked(row+1:side, 9, i) = blocked(row+1:side, 9, i) + 1
                          blocked(row+1:box_end, 7:9, i) = &
                              blocked(row+1:box_end, 7:9, i) + 1
                          call fill_row(row + 1)
                          blocked(row+1:side, 9, i) = blocked(row+1:side, 9, i) - 1
                          blocked(row+1:box_end, 7:9, i) = &
                              blocked(row+1:box_end, 7:9, i) - 1
                        else
                          solutions = solutions + 1
                          number = ((a - 1) * side + b - 1) * side + c - 1
                          number = ((number * side + d - 1) * side + e - 1) * side + f - 1
                          number = ((number * side + g - 1) * side + h - 1) * side + i - 1
                          last_rows = last_rows + number
                        end if
                      end do
                      blocked(row+1:side, 8, h) = blocked(row+1:side, 8, h) - 1
                      blocked(row+1:box_end, 7:9, h) = &
                          blocked(row+1:box_end, 7:9, h) - 1
                    end do
                    blocked(row+1:side, 7, g) = blocked(row+1:side, 7, g) - 1
                    blocked(row+1:box_end, 7:9, g) = &
                        blocked(row+1:box_end, 7:9, g) - 1
                  end do
                  blocked(row+1:side, 6, f) = blocked(row+1:side, 6, f) - 1
                  blocked(row+1:box_end, 4:6, f) = &
                      blocked(row+1:box_end, 4:6, f) - 1
                end do
                blocked(row+1:side, 5, e) = blocked(row+1:side, 5, e) - 1
                blocked(row+1:box_end, 4:6, e) = &
                    blocked(row+1:box_end, 4:6, e) - 1
              end do
              blocked(row+1:side, 4, d) = blocked(row+1:side, 4, d) - 1
              blocked(row+1:box_end, 4:6, d) = &
                  blocked(row+1:box_end, 4:6, d) - 1
            end do
            blocked(row+1:side, 3, c) = blocked(row+1:side, 3, c) - 1
            blocked(row+1:box_end, 1:3, c) = &
                blocked(row+1:box_end, 1:3, c) - 1
          end do
          blocked(row+1:side, 2, b) = blocked(row+1:side, 2, b) - 1
          blocked(row+1:box_end, 1:3, b) = &
              blocked(row+1:box_end, 1:3, b) - 1
        end do
        blocked(row+1:side, 1, a) = blocked(row+1:side, 1, a) - 1
        blocked(row+1:box_end, 1:3, a) = &
            blocked(row+1:box_end, 1:3, a) - 1
      end do
    end subroutine
  end subroutine
end module

program states_rows
  use board
  use search
  implicit none
  type(sums) :: found
  integer :: repeats, empty, number, given(cells, 0:cases-1)

  repeats = argument(1, 40 / share, 1, 2000000000)
  empty = argument(2, 40, 1, cells)
  do number = 0, cases - 1
    call give_digits(number, empty, given(:, number))
  end do
  call fill_boards(given, repeats, found%filled, found%solutions, found%last_rows)
  call report('states-rows', repeats, checksum(found), expected_sum(repeats, given))
end program
