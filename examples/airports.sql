-- Airports and the flights between them: a flight's two ends are objects, and a path follows them.
-- Run it from the project's folder: ovsql -f examples/airports.sql
CREATE TABLE airport (iata TEXT PRIMARY KEY, name TEXT, city TEXT, state TEXT, country TEXT,
                      latitude DOUBLE, longitude DOUBLE);
COPY airport FROM 'examples/data/airports.csv' WITH (HEADER, NULL 'NA');
CREATE TABLE flight (origin REFERENCES airport, destination REFERENCES airport, count INT);
COPY flight FROM 'examples/data/flights.csv' WITH (HEADER);
CREATE INDEX airport_state ON airport (state, city);
CREATE INDEX flight_origin ON flight (origin);
CREATE INDEX flight_count ON flight (count DESC);

.print ""
.print The busiest routes: a path instead of two joins; the order is that of an index.
EXPLAIN SELECT origin.city, destination.city, count FROM flight ORDER BY count DESC LIMIT 5;
SELECT origin.city AS from_city, destination.city AS to_city, count FROM flight ORDER BY count DESC LIMIT 5;

.print ""
.print Departures from Vermont: a range of one index, then lookups in another.
EXPLAIN SELECT a.name, f.destination.iata, f.count FROM airport a JOIN flight f ON f.origin = a WHERE a.state = 'VT';
SELECT a.name, f.destination.iata AS destination, f.count FROM airport a JOIN flight f ON f.origin = a
  WHERE a.state = 'VT' ORDER BY f.count DESC LIMIT 5;

.print ""
.print The states with the most flights out: groups of what references lead to.
SELECT origin.state AS state, count(*) AS routes, sum(count) AS flights FROM flight
  GROUP BY origin.state HAVING sum(count) > 200000 ORDER BY flights DESC;

.print ""
.print Airports of Hawaii that nothing flies from: NOT EXISTS is a join that looks for nothing.
EXPLAIN SELECT iata FROM airport a WHERE state = 'HI' AND NOT EXISTS (SELECT 1 FROM flight f WHERE f.origin = a);
SELECT iata, city FROM airport a WHERE state = 'HI' AND NOT EXISTS (SELECT 1 FROM flight f WHERE f.origin = a)
  ORDER BY iata LIMIT 5;

.print ""
.print Routes that beat the average of their own airport, the most by far.
SELECT origin.iata AS origin, destination.iata AS destination, count,
       count - (SELECT avg(g.count) FROM flight g WHERE g.origin = f.origin) AS above_average
  FROM flight f ORDER BY above_average DESC, count LIMIT 5;

.print ""
.print Routes that are flown one way only, by states.
SELECT f.origin.state AS state, count(*) AS one_way FROM flight f
  LEFT JOIN flight back ON back.origin = f.destination AND back.destination = f.origin
  WHERE back IS NULL GROUP BY f.origin.state ORDER BY one_way DESC, state LIMIT 5;
