# Draws docs/cost.svg of Benchmarks/releases.txt: what each release costs, the oldest first.
releases = "Benchmarks/releases.txt"
set terminal svg size 740,300 fixed font "sans-serif,12" background rgb "white"
set output "docs/cost.svg"
set key off
set border 3
set tics nomirror
set style line 1 linecolor rgb "#4a7ebb" linewidth 1.5 pointtype 7 pointsize 0.5
set style fill solid noborder

set multiplot

# The final step against size, both in powers of ten.
set origin 0, 0
set size 0.5, 1
set title "Final step of a synchronisation"
set xlabel "instruments, and as many cards"
set ylabel "microseconds"
set logscale xy
set xrange [7:3000]
set yrange [0.1:100000]
plot releases using (10):5:(90):($6 - $5) with vectors nohead linestyle 1, \
     "" using (100):6:(900):($7 - $6) with vectors nohead linestyle 1, \
     for [place = 0:2] "" using (10 ** (place + 1)):place + 5 with points linestyle 1, \
     "" using (1000):7:1 with labels left offset 1

# One bar a release, from nothing, with its figure at the end.
unset logscale
unset xlabel
unset ylabel
unset xtics
set border 0
set size 0.5, 0.33
set rmargin 9
set yrange [*:*] reverse
titles = "'Text of the shared library, KiB' 'Instructions of a first card' 'Allocations of a first card'"
do for [row = 1:3] {
  set origin 0.5, 1 - row / 3.0
  set title word(titles, row)
  set xrange [0:*]
  unit = row == 1 ? 1024.0 : 1
  plot releases using (column(row + 1) / unit / 2):0:(column(row + 1) / unit / 2):(0.3):ytic(1) \
         with boxxyerror linestyle 1, \
       "" using (column(row + 1) / unit):0:(sprintf("%.0f", column(row + 1) / unit)) \
         with labels left offset 1
}
unset multiplot
