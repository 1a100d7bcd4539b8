# One look-up in homes of different sizes: set data, picture and name.
set terminal svg size 720,440 font "sans-serif,13" background "white"
set output picture
set title "Device database: ".name
set logscale xy
set format x "10^{%T}"
set format y "10^{%T}"
set xlabel "devices in the home, ten index keys each"
set ylabel "milliseconds"
set key left top
set grid
plot data using 1:3 with linespoints linewidth 2 pointtype 6 linecolor rgb "#888888" title "bare loop of the Depot calls", \
     data using 1:2 with linespoints linewidth 2 pointtype 7 linecolor rgb "#1f5fa8" title "library"
