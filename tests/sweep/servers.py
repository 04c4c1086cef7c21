"""The sweep of the queue again, with the queue on a PostgreSQL server: kills, and connections that break."""
import handover

CONNECTION_FAULTS = ["ECONNRESET"]
# From the server and from the service. Only a connection that is broken refuses to send; then libpq goes on to receive,
# and would wait for ever for the answer to what was refused on one that is not.
OF_CONNECTIONS = {"recvfrom"}


def positions(bench):
    bench.use_server()
    return handover.positions(bench, CONNECTION_FAULTS, OF_CONNECTIONS)
