set title "Steps of the geolocations of a run"
unset key; set xlabel "steps"; set ylabel "geolocations"; set style fill solid 0.5; set boxwidth 0.8
set yrange [0:*]; set xtics 1
plot "iterations" using 1:2 with boxes
