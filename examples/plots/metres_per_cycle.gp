set title "Metres per cycle over range"
set xlabel "range sample of the master"; set ylabel "m per cycle"; set key bottom left
plot "early" using 1:3 with linespoints title "first line", "late" using 1:3 with linespoints title "last line"
